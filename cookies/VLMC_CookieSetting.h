#ifndef VLMC_COOKIESETTING_H
#define VLMC_COOKIESETTING_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QList>
#include <QtNetwork/QNetworkCookie>

/**
 * A stored cookie as texts. A text that the document does not have is empty.
 */
struct VLMS_CookieInfo {
    QString website;  ///< the domain
    QString name;     ///< the name
    QString path;     ///< the path
    QString secure;   ///< "true" or "false"
    QString expires;  ///< "yyyy/MM/dd hh:mm:ss", without a time zone; empty for a session cookie
    QString contents; ///< the value
};

/**
 * The browser's cookies, converted between the engine's "cookie.ini" and an XML file whose path the
 * caller names. The document holds one entry per cookie, the latest first, addressed by id, its
 * position. It lives in memory only while a conversion runs: each conversion loads it and leaves it
 * empty. Used from one thread, which runs an event loop.
 *
 * In the XML file a cookie loses HttpOnly and SameSite, for which there is no element, and the time
 * zone of its expiry. A date is stored as the clock time that the cookie gives, UTC for one from a
 * server, and is read back as local time. A value with "]]>" comes back cut behind the "]]".
 *
 * Names and values of cookies never reach the log.
 */
class VLM_EXPORT VLMC_CookieSetting : public VLMC_XMLSetting
{
public:
    /// The one store of the process, created on the first call and destroyed at exit.
    static VLMC_CookieSetting *getInstance();

    VLMC_CookieSetting();

    /// Adds an entry in front of all others, even if there is an equal one. All get their ids with
    /// the next numbering. Without a document nothing is kept. The cookie is only read; its name
    /// and value are taken as UTF-8, up to a zero byte.
    void addCookieInfo(QNetworkCookie &cookie);
    /// All entries with ids from 0 up to their number, in that order; entries just added have no id
    /// yet. Of several entries with the same id the first counts.
    QList<VLMS_CookieInfo> getAllCookieInfo();
    /// True when domain, name, path, secure and value are the same, whatever the expiry. Name and
    /// value are taken byte by byte here, so that a cookie with bytes outside ASCII is never found
    /// equal to its own entry. Both arguments are only read.
    bool isMuchCookieInfo(QNetworkCookie &cookie, VLMS_CookieInfo &info);
    /// Deletes the entry with this id, if there is one, and renumbers the others in any case.
    void deleteCookieInfo(int si_XMLNum);

    /// All cookies of the file "cookie.ini" in the directory, as far as its data go; none if it is
    /// missing, and none but a warning in the log if it exists and cannot be read, is larger than
    /// 16 MiB, or gives more than 20,000 cookies. The directory ends with "/". A null or empty one
    /// and a max below 1 are refused with a warning in the log; otherwise max limits nothing.
    QList<QNetworkCookie> loadCookieInfo(QString *dir, int max);
    /// Replaces everything in the directory's "cookie.ini" by the cookies. A new file is readable
    /// by its owner alone. If it cannot be written, or the old one not be read, the old one stands
    /// and the log has a warning. Refuses what loadCookieInfo refuses; otherwise max limits
    /// nothing.
    void saveCookieInfo(QList<QNetworkCookie> cookies, QString *dir, int max);
    /// Brings the XML file in line with the directory's "cookie.ini". Of the file's first 20
    /// entries those that equal a cookie stay and the others go; cookies without an equal entry are
    /// put in front, in their order. Entries from the 21st on stay as they are. A new file is
    /// readable by its owner alone. A "cookie.ini" that loadCookieInfo cannot read changes nothing.
    /// Null arguments are refused with an error in the log.
    void convertCookieIniToXML(char *iniDir, char *xmlPath);
    /// Replaces everything in the directory's "cookie.ini" by the first 20 entries of the XML file;
    /// by none if it is missing. One that exists, but gives not even a root, changes nothing and
    /// leaves a warning in the log. Null arguments are refused with an error in the log.
    void convertCookieXMLToIni(char *xmlPath, char *iniDir);

protected:
    /// The max of the last loadCookieInfo, kept for information only; 0 at first.
    int loadMax;
};

#endif
