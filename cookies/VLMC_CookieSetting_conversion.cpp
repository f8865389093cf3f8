// The engine's "cookie.ini", and the way from there to the XML file and back.

#include "cookies/VLMC_CookieSetting.h"

#include "cookies/CookieElements_p.h"
#include "cookies/IniFile_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/QtCompat_p.h"
#include "core/Refused_p.h"
#include "core/VLMG_Debug.h"
#include "files/OwnerOnlyFiles_p.h"
#include "text/TimeText_p.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QVector>

#include <cerrno>
#include <sys/stat.h>

using namespace vlm;
using namespace vlm::cookies;

namespace
{
QString iniPath(const QString &directory)
{
    return directory + QEXC_TextCodec::fromSJIS(kIniFileName);
}

// Whether this thread's last loadCookieInfo could read its file: its result has no place for that.
thread_local bool iniWasRead = true;

// Reads as far as the data goes, whatever the count promises, even a negative one. The stream takes
// memory in steps as the bytes come in, whatever a length claims. False if there are too many.
bool readCookies(const QByteArray &bytes, QList<QNetworkCookie> *cookies)
{
    QDataStream stream(bytes);
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && !stream.atEnd(); ++i) {
        QByteArray rawForm;
        stream >> rawForm;
        // One raw form may give a cookie for each of its lines.
        if (rawForm.count('\n') > kMaxIniCookies) {
            return false;
        }
        *cookies += QNetworkCookie::parseCookies(rawForm);
        if (cookies->size() > kMaxIniCookies) {
            return false;
        }
    }
    return true;
}

QByteArray bytesOf(const QList<QNetworkCookie> &cookies)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::ReadWrite);
    stream << qint32(cookies.size());
    for (const QNetworkCookie &cookie : cookies) {
        stream << cookie.toRawForm(QNetworkCookie::Full);
    }
    return bytes;
}

QNetworkCookie cookieOf(const VLMS_CookieInfo &info)
{
    QNetworkCookie cookie;
    cookie.setDomain(info.website);
    cookie.setName(info.name.toUtf8());
    cookie.setPath(info.path);
    cookie.setSecure(info.secure == QEXC_TextCodec::fromSJIS(kTrue));
    cookie.setExpirationDate(timeOfText(info.expires, ToSecond));
    cookie.setValue(info.contents.toUtf8());
    return cookie;
}

// A missing or empty file is a document without cookies; one that gives not even a root is none.
bool isUnreadable(VLMC_XMLNode *root, const QString &path)
{
    struct stat status = {};
    const QByteArray name = QFile::encodeName(QFile(path).fileName());
    if (path.isEmpty() || (root && !root->getName().isEmpty())) {
        return false;
    }
    return stat(name.constData(), &status) == 0 ? status.st_size > 0 || !S_ISREG(status.st_mode)
                                                : errno != ENOENT && errno != ENOTDIR;
}

int consideredOf(const QList<VLMS_CookieInfo> &stored)
{
    return qMin(int(stored.size()), kMaxConverted);
}

// Marks the first entry not yet kept that equals the cookie. False when there is none.
bool keepEqual(VLMC_CookieSetting &store, QNetworkCookie &cookie, QList<VLMS_CookieInfo> &stored,
               QVector<bool> &kept)
{
    for (int i = 0; i < kept.size(); ++i) {
        if (!kept.at(i) && store.isMuchCookieInfo(cookie, stored[i])) {
            kept[i] = true;
            return true;
        }
    }
    return false;
}

// From the highest id down: each deletion renumbers. From the last cookie to the first: each one
// goes to the front.
void merge(VLMC_CookieSetting &store, QList<QNetworkCookie> &cookies)
{
    QList<VLMS_CookieInfo> stored = store.getAllCookieInfo();
    QVector<bool> kept(consideredOf(stored), false);
    QVector<bool> isNew(int(cookies.size()), true);
    for (int i = 0; i < isNew.size(); ++i) {
        isNew[i] = !keepEqual(store, cookies[i], stored, kept);
    }
    for (int id = int(kept.size()) - 1; id >= 0; --id) {
        if (!kept.at(id)) {
            store.deleteCookieInfo(id);
        }
    }
    for (int i = int(isNew.size()) - 1; i >= 0; --i) {
        if (isNew.at(i)) {
            store.addCookieInfo(cookies[i]);
        }
    }
}
} // namespace

QList<QNetworkCookie> VLMC_CookieSetting::loadCookieInfo(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::loadCookieInfo] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_CookieSetting::loadCookieInfo] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_CookieSetting::loadCookieInfo] Error load_max:%d", max)) {
        return QList<QNetworkCookie>();
    }
    loadMax = max;
    QByteArray bytes;
    QList<QNetworkCookie> cookies;
    iniWasRead = IniFile(iniPath(*dir)).read(&bytes) && readCookies(bytes, &cookies);
    if (refused(!iniWasRead, "[VLMC_CookieSetting::loadCookieInfo] File cannot be read.")) {
        return QList<QNetworkCookie>();
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::loadCookieInfo] end");
    return cookies;
}

void VLMC_CookieSetting::saveCookieInfo(QList<QNetworkCookie> cookies, QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::saveCookieInfo] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_CookieSetting::saveCookieInfo] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_CookieSetting::saveCookieInfo] Error save_max:%d", max)) {
        return;
    }
    if (refused(!IniFile(iniPath(*dir)).write(bytesOf(cookies)),
                "[VLMC_CookieSetting::saveCookieInfo] File cannot be written.")) {
        return;
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::saveCookieInfo] end");
}

// The engine's own file belongs to the one instance, the document to the object of the call.
void VLMC_CookieSetting::convertCookieIniToXML(char *iniDir, char *xmlPath)
{
    if (!iniDir || !xmlPath) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.");
        return;
    }
    QString directory = fromCString(iniDir);
    QString path = fromCString(xmlPath);
    iniWasRead = true;
    QList<QNetworkCookie> cookies = getInstance()->loadCookieInfo(&directory, kMaxConverted);
    if (!iniWasRead) {
        deleteAllSetting();
        return;
    }
    load(path);
    merge(*this, cookies);
    nameRoot(*this, kRoot);
    numberEntries(*this);
    {
        const OwnerOnlyFiles ownerOnly;
        save(path);
    }
    deleteAllSetting();
}

// The message names the other conversion; log readers know it that way.
void VLMC_CookieSetting::convertCookieXMLToIni(char *xmlPath, char *iniDir)
{
    if (!xmlPath || !iniDir) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.");
        return;
    }
    QString path = fromCString(xmlPath);
    QString directory = fromCString(iniDir);
    load(path);
    if (refused(isUnreadable(getXMLRootNode(), path),
                "[VLMC_CookieSetting::convertCookieXMLToIni] File cannot be read.")) {
        deleteAllSetting();
        return;
    }
    const QList<VLMS_CookieInfo> stored = getAllCookieInfo();
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < consideredOf(stored); ++i) {
        cookies.append(cookieOf(stored.at(i)));
    }
    getInstance()->saveCookieInfo(cookies, &directory, kMaxConverted);
    deleteAllSetting();
}
