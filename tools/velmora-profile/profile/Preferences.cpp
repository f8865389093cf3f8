#include "tools/velmora-profile/profile/Preferences.h"

#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Entry.h"

namespace
{
using namespace profile;

const char kSwitch[] = "true false";
const char kTiming[] = "changeUser notDelete";
const char kOldTiming[] = "logout timeout";
const char kZooms[] = "0.5 0.6 0.7 0.8 0.9 1.0 1.1 1.2 1.3 1.4 1.5";

VLMC_BrowserCommonSetting &common() { return *VLMC_BrowserCommonSetting::getInstance(); }
VLMC_BrowserUserSetting &user() { return *VLMC_BrowserUserSetting::getInstance(); }

QStringList words(const char *list) { return text(list).split(QLatin1Char(' ')); }

// The code of the setters: 1 for the word that stands for it, 0 for the other.
char code(const QString &value, const char *one) { return value == text(one) ? 1 : 0; }

short zoomCode(const QString &value) { return short(words(kZooms).indexOf(value) + 1); }

typedef const QString &Value;

const Preference kPreferences[] = {
    {CommonPreferences, "cookie.acceptCookie", Preference::Word, "accept refuse", "", 0, "accept",
     [](Value value) { return common().setRcvCookieInfo(code(value, "accept")), true; }},
    {CommonPreferences, "cache.enableCache", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseCacheInfo(code(value, "true")), true; }},
    {CommonPreferences, "cache.cacheDeleteTiming", Preference::Word, kTiming, kOldTiming, 0,
     "notDelete",
     [](Value value) { return common().setCacheDeleteTiming(code(value, "changeUser")), true; }},
    {CommonPreferences, "keyboard.priority", Preference::Word, "soft usb", "", 0, "soft",
     [](Value value) { return common().setSWKeyBoardTypeInfo(code(value, "soft")), true; }},
    {CommonPreferences, "javascript.enableJavascript", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseJavaScriptInfo(code(value, "true")), true; }},
    {CommonPreferences, "plugin.enableFlashPlugin", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setPlayFlashInfo(code(value, "true")), true; }},
    {CommonPreferences, "proxy.enableProxy", Preference::Word, kSwitch, "", 0, "false",
     [](Value value) { return common().setUseProxyInfo(code(value, "true")), true; }},
    {CommonPreferences, "proxy.hostName", Preference::Text, "", "", 253, "",
     [](Value value) { return bool(common().setProxyServerStr(value)); }},
    {CommonPreferences, "proxy.portHTTP", Preference::Text, "", "", 5, "8080",
     [](Value value) { return bool(common().setProxyHttpPortStr(value)); }},
    {CommonPreferences, "proxy.portHTTPS", Preference::Text, "", "", 5, "8080",
     [](Value value) { return bool(common().setProxyHttpsPortStr(value)); }},
    {CommonPreferences, "proxy.enableHTTP11", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseProxyHttpInfo(code(value, "true")), true; }},
    {CommonPreferences, "proxy.unusedDomain", Preference::Text, "", "", 253, "",
     [](Value value) { return bool(common().setNoProxyDomainStr(value)); }},
    {CommonPreferences, "proxy.enableProxyAuth", Preference::Word, kSwitch, "", 0, "false",
     [](Value value) { return common().setUseProxyCertificationInfo(code(value, "true")), true; }},
    {CommonPreferences, "proxy.proxyUserName", Preference::Base64, "", "", 80, "",
     [](Value value) { return bool(common().setProxyAccountStr(value.toUtf8())); }},
    {CommonPreferences, "proxy.proxyUserPass", Preference::Base64Secret, "", "", 80, "",
     [](Value value) { return bool(common().setProxyPasswordStr(value.toUtf8())); }},
    {CommonPreferences, "security.enableSSL30", Preference::Word, kSwitch, "", 0, "false",
     [](Value value) { return common().setUseSSL30(code(value, "true")), true; }},
    {CommonPreferences, "security.enableTLS10", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseTLS10(code(value, "true")), true; }},
    {CommonPreferences, "security.enableTLS11", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseTLS11(code(value, "true")), true; }},
    {CommonPreferences, "security.enableTLS12", Preference::Word, kSwitch, "", 0, "true",
     [](Value value) { return common().setUseTLS12(code(value, "true")), true; }},
    {UserPreferences, "pageInfo.home", Preference::Text, "", "", 256, "about:blank",
     [](Value value) { return bool(user().setHomePage(value)); }},
    {UserPreferences, "pageInfo.startup", Preference::Word, "lastpage homepage", "", 0, "homepage",
     [](Value value) { return user().setStartUp(code(value, "lastpage")), true; }},
    {UserPreferences, "pageInfo.lastPageURL", Preference::Text, "", "", 256, "about:blank",
     [](Value value) { return bool(user().setLastPage(value)); }},
    {UserPreferences, "pageInfo.Zoom", Preference::Word, kZooms, "", 0, "1.0",
     [](Value value) { return bool(user().setZoomInfo(zoomCode(value))); }},
    {UserPreferences, "cookie.cookieDeleteTiming", Preference::Word, kTiming, kOldTiming, 0,
     "notDelete",
     [](Value value) { return user().setCookieDeleteTiming(code(value, "changeUser")), true; }},
    {UserPreferences, "authInfo.authInfoDeleteTiming", Preference::Word, kTiming, kOldTiming, 0,
     "notDelete",
     [](Value value) {
         return user().setCertificationDeleteTiming(code(value, "changeUser")), true;
     }},
    {UserPreferences, "font.fontName", Preference::Text, "", "", 256, "",
     [](Value value) { return bool(user().setFontName(value)); }},
};

bool isEncoded(const Preference &preference)
{
    return preference.kind == Preference::Base64 || preference.kind == Preference::Base64Secret;
}

VLMC_XMLNode *elementOf(const Preference &preference, const Document &document)
{
    const QString name = text(preference.name);
    for (VLMC_XMLNode *const group : document.children()) {
        if (group->getName() == name.section(QLatin1Char('.'), 0, 0)) {
            return fieldOf(group, name.section(QLatin1Char('.'), 1).toUtf8().constData());
        }
    }
    return nullptr;
}

QString hiddenBecause(const Preference &preference, const QByteArray &value)
{
    if (preference.kind == Preference::Word) {
        const QStringList known = words(preference.words) + words(preference.oldWords);
        return known.contains(QString::fromUtf8(value))
                   ? QString()
                   : text("the browser does not know this word");
    }
    if (value.size() > preference.maxBytes) {
        return text("%1 bytes, over the limit of %2").arg(value.size()).arg(preference.maxBytes);
    }
    // Empty pages read as their default.
    return value.isEmpty() && preference.document == UserPreferences && *preference.fallback != 0
               ? text("empty")
               : QString();
}
} // namespace

const QList<profile::Preference> &profile::preferences()
{
    static const QList<Preference> all(std::begin(kPreferences), std::end(kPreferences));
    return all;
}

const profile::Preference *profile::preferenceNamed(const QString &name)
{
    for (const Preference &preference : kPreferences) {
        if (name == text(preference.name)) {
            return &preference;
        }
    }
    return nullptr;
}

profile::PreferenceValue profile::valueOf(const Preference &preference, const Document &document)
{
    PreferenceValue value = {false, text(preference.fallback), QString()};
    VLMC_XMLNode *const element = elementOf(preference, document);
    // The one that a damaged document breaks off in is not whole.
    if (!element || !document.entries().contains(element)) {
        return value;
    }
    const QByteArray stored = element->getText().toUtf8();
    const QByteArray decoded = isEncoded(preference) ? QByteArray::fromBase64(stored) : stored;
    value.inFile = true;
    value.value = QString::fromUtf8(decoded);
    value.hidden = hiddenBecause(preference, decoded);
    return value;
}

QString profile::shown(const Preference &preference, const QString &value, bool showSecrets)
{
    const bool isSecret = preference.kind == Preference::Base64Secret;
    return isSecret ? masked(value, showSecrets) : value;
}

QString profile::limitOf(const Preference &preference)
{
    if (preference.kind == Preference::Word) {
        QStringList all = words(preference.words);
        const QString last = all.takeLast();
        return text("%1 or %2").arg(all.join(text(", ")), last);
    }
    return text("at most %1 bytes%2")
        .arg(preference.maxBytes)
        .arg(text(preference.kind == Preference::Text ? " of UTF-8" : ""));
}
