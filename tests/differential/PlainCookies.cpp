#include "tests/differential/PlainCookies.h"

#include "cookies/VLMC_CookieSetting.h"

namespace
{
const char kForm[] = "yyyy/MM/dd hh:mm:ss";

QString asUtf8(const QByteArray &bytes) { return QString::fromUtf8(bytes.constData()); }

QString asCString(const QByteArray &bytes) { return QString::fromLatin1(bytes.constData()); }

QString secureText(const QNetworkCookie &cookie)
{
    return cookie.isSecure() ? textOf("true") : textOf("false");
}

QString textOfChild(const ElementPointer &entry, const char *name)
{
    const ElementPointer child = childOf(entry, name);
    return child ? child->text : QString();
}
} // namespace

void PlainCookies::addCookieInfo(const QNetworkCookie &cookie)
{
    print(3, "[VLMC_CookieSetting::addCookieInfo]");
    const ElementPointer entry = add(root, "webSiteInfo", QString(), 0, true);
    add(entry, "website", cookie.domain());
    add(entry, "name", asUtf8(cookie.name()));
    add(entry, "path", cookie.path());
    add(entry, "secure", secureText(cookie));
    add(entry, "expires", cookie.expirationDate().toString(textOf(kForm)));
    add(entry, "contents", asUtf8(cookie.value()), 1);
}

QList<VLMS_CookieInfo> PlainCookies::getAllCookieInfo()
{
    QList<VLMS_CookieInfo> infos;
    for (int id = 0; id < childCount(); ++id) {
        const ElementPointer entry = byId(id);
        if (!entry) {
            continue;
        }
        VLMS_CookieInfo info;
        info.website = textOfChild(entry, "website");
        info.name = textOfChild(entry, "name");
        info.path = textOfChild(entry, "path");
        info.secure = textOfChild(entry, "secure");
        info.expires = textOfChild(entry, "expires");
        info.contents = textOfChild(entry, "contents");
        infos.append(info);
    }
    return infos;
}

bool PlainCookies::isMuchCookieInfo(const QNetworkCookie &cookie, const VLMS_CookieInfo &info)
{
    return cookie.domain() == info.website && asCString(cookie.name()) == info.name
           && cookie.path() == info.path && secureText(cookie) == info.secure
           && asCString(cookie.value()) == info.contents;
}

void PlainCookies::deleteCookieInfo(int id)
{
    print(3, "[VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:" + QByteArray::number(id));
    deleteById(id);
    setIds();
}

QList<QNetworkCookie> PlainCookies::loadCookieInfo(const QString *dir, int max)
{
    QList<QNetworkCookie> cookies;
    print(3, "[VLMC_CookieSetting::loadCookieInfo] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_CookieSetting::loadCookieInfo] Path is NULL or empty.");
        return cookies;
    }
    if (max < 1) {
        print(2, "[VLMC_CookieSetting::loadCookieInfo] Error load_max:" + QByteArray::number(max));
        return cookies;
    }
    const Ini ini = inis.value(*dir + textOf("cookie.ini"));
    for (int i = 0; i < ini.rawForms.size() && unsigned(i) < unsigned(ini.count); ++i) {
        cookies += QNetworkCookie::parseCookies(ini.rawForms.at(i));
    }
    print(3, "[VLMC_CookieSetting::loadCookieInfo] end");
    return cookies;
}

void PlainCookies::saveCookieInfo(const QList<QNetworkCookie> &cookies, const QString *dir, int max)
{
    print(3, "[VLMC_CookieSetting::saveCookieInfo] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_CookieSetting::saveCookieInfo] Path is NULL or empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_CookieSetting::saveCookieInfo] Error save_max:" + QByteArray::number(max));
        return;
    }
    Ini ini = {int(cookies.size()), QList<QByteArray>()};
    for (const QNetworkCookie &cookie : cookies) {
        ini.rawForms.append(cookie.toRawForm(QNetworkCookie::Full));
    }
    inis[*dir + textOf("cookie.ini")] = ini;
    print(3, "[VLMC_CookieSetting::saveCookieInfo] end");
}

void PlainCookies::convertCookieIniToXML(const char *iniDir, const char *xmlPath)
{
    if (!iniDir || !xmlPath) {
        print(1, "[VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.");
        return;
    }
    const QString dir = QString::fromLatin1(iniDir);
    const QString path = QString::fromLatin1(xmlPath);
    const QList<QNetworkCookie> cookies = loadCookieInfo(&dir, 20);
    load(path);
    const QList<VLMS_CookieInfo> stored = getAllCookieInfo();
    const int considered = qMin(int(stored.size()), 20);
    QList<bool> isNew;
    QList<bool> isKept;
    for (int i = 0; i < cookies.size(); ++i) {
        isNew.append(true);
    }
    for (int j = 0; j < considered; ++j) {
        isKept.append(false);
    }
    for (int i = 0; i < cookies.size(); ++i) {
        for (int j = 0; j < considered; ++j) {
            if (!isKept.at(j) && isMuchCookieInfo(cookies.at(i), stored.at(j))) {
                isKept[j] = true;
                isNew[i] = false;
                break;
            }
        }
    }
    for (int j = considered - 1; j >= 0; --j) {
        if (!isKept.at(j)) {
            deleteCookieInfo(j);
        }
    }
    for (int i = int(cookies.size()) - 1; i >= 0; --i) {
        if (isNew.at(i)) {
            addCookieInfo(cookies.at(i));
        }
    }
    nameRoot("cookie");
    setIds();
    save(path);
    deleteAllSetting();
}

void PlainCookies::convertCookieXMLToIni(const char *xmlPath, const char *iniDir)
{
    if (!xmlPath || !iniDir) {
        print(1, "[VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.");
        return;
    }
    const QString path = QString::fromLatin1(xmlPath);
    const QString dir = QString::fromLatin1(iniDir);
    load(path);
    if (root && root->name.isEmpty() && !files.value(path).isEmpty()) {
        print(2, "[VLMC_CookieSetting::convertCookieXMLToIni] File cannot be read.");
        deleteAllSetting();
        return;
    }
    const QList<VLMS_CookieInfo> stored = getAllCookieInfo();
    QList<QNetworkCookie> cookies;
    for (int j = 0; j < stored.size() && j < 20; ++j) {
        QNetworkCookie cookie;
        cookie.setDomain(stored.at(j).website);
        cookie.setName(stored.at(j).name.toUtf8());
        cookie.setPath(stored.at(j).path);
        cookie.setSecure(stored.at(j).secure == textOf("true"));
        cookie.setExpirationDate(timeOf(stored.at(j).expires, kForm));
        cookie.setValue(stored.at(j).contents.toUtf8());
        cookies.append(cookie);
    }
    saveCookieInfo(cookies, &dir, 20);
    deleteAllSetting();
}
