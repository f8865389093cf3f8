#ifndef TESTS_DIFFERENTIAL_PLAINCOOKIES_H
#define TESTS_DIFFERENTIAL_PLAINCOOKIES_H

#include "tests/differential/PlainStore.h"

#include <QtNetwork/QNetworkCookie>

struct VLMS_CookieInfo;

/// The rules of VLMC_CookieSetting.
class PlainCookies : public PlainStore
{
public:
    /// What a "cookie.ini" holds.
    struct Ini {
        int count;
        QList<QByteArray> rawForms;
    };
    /// By path.
    QMap<QString, Ini> inis;

    void addCookieInfo(const QNetworkCookie &cookie);
    QList<VLMS_CookieInfo> getAllCookieInfo();
    bool isMuchCookieInfo(const QNetworkCookie &cookie, const VLMS_CookieInfo &info);
    void deleteCookieInfo(int id);

    QList<QNetworkCookie> loadCookieInfo(const QString *dir, int max);
    void saveCookieInfo(const QList<QNetworkCookie> &cookies, const QString *dir, int max);
    void convertCookieIniToXML(const char *iniDir, const char *xmlPath);
    void convertCookieXMLToIni(const char *xmlPath, const char *iniDir);
};

#endif
