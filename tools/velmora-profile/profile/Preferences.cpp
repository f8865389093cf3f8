#include "tools/velmora-profile/profile/Preferences.h"

#include "preferences/CommonRows_p.h"
#include "preferences/UserRows_p.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tools/velmora-profile/output/Text.h"

#include <type_traits>

namespace
{
using namespace profile;

typedef const QString &Value;
typedef VLMC_BrowserCommonSetting Common;
typedef VLMC_BrowserUserSetting User;

template <typename Store>
DocumentKind kindOf()
{
    return std::is_same<Store, Common>::value ? CommonPreferences : UserPreferences;
}

template <typename Store>
Store &store()
{
    return *Store::getInstance();
}

template <typename Store>
Preference of(const vlm::FlagEntry &row, void (Store::*set)(char))
{
    const QStringList words = {text(row.onWord), text(row.offWord)};
    return {kindOf<Store>(),
            text(row.group),
            text(row.element),
            Preference::Word,
            words,
            {},
            0,
            words.at(row.fallback ? 0 : 1),
            false,
            [=](Value value) { return (store<Store>().*set)(value == words.at(0) ? 1 : 0), true; }};
}

template <typename Store>
Preference of(const vlm::DeleteTimingEntry &row, void (Store::*set)(char))
{
    const vlm::FlagEntry words = {row.group,       row.element,       vlm::kChangeUser,
                                  vlm::kNotDelete, vlm::kNeverDelete, vlm::NonZeroIsOn};
    Preference preference = of(words, set);
    preference.oldWords = QStringList{text(vlm::kLogout), text(vlm::kTimeout)};
    return preference;
}

template <typename Store>
Preference of(const vlm::TextEntry &row, int (Store::*set)(QString))
{
    return {kindOf<Store>(),
            text(row.group),
            text(row.element),
            Preference::Text,
            {},
            {},
            row.maxUtf8Bytes,
            text(row.fallback),
            row.emptyText == vlm::EmptyIsFallback,
            [=](Value value) { return (store<Store>().*set)(value) != 0; }};
}

template <typename Store>
Preference of(const vlm::BytesEntry &row, int (Store::*set)(QByteArray), Preference::Kind kind)
{
    return {kindOf<Store>(),
            text(row.group),
            text(row.element),
            kind,
            {},
            {},
            row.maxBytes,
            QString(),
            false,
            [=](Value value) { return (store<Store>().*set)(value.toUtf8()) != 0; }};
}

Preference zoom()
{
    using namespace vlm::userPreferences;
    QStringList words;
    for (const char *const word : kZoomTexts) {
        words.append(text(word));
    }
    return {UserPreferences,
            text(kPageInfo),
            text(kZoom),
            Preference::Word,
            words,
            {},
            0,
            words.at(kFullSize - 1),
            false,
            [words](Value value) {
                return store<User>().setZoomInfo(short(words.indexOf(value) + 1)) != 0;
            }};
}

QList<Preference> ofCommon()
{
    using namespace vlm::commonPreferences;
    return {
        of(kAcceptCookie, &Common::setRcvCookieInfo),
        of(kEnableCache, &Common::setUseCacheInfo),
        of(kCacheDeleteTiming, &Common::setCacheDeleteTiming),
        of(kKeyboardPriority, &Common::setSWKeyBoardTypeInfo),
        of(kJavascript, &Common::setUseJavaScriptInfo),
        of(kFlashPlugin, &Common::setPlayFlashInfo),
        of(kEnableProxy, &Common::setUseProxyInfo),
        of(kHostName, &Common::setProxyServerStr),
        of(kPortHttp, &Common::setProxyHttpPortStr),
        of(kPortHttps, &Common::setProxyHttpsPortStr),
        of(kEnableHttp11, &Common::setUseProxyHttpInfo),
        of(kUnusedDomain, &Common::setNoProxyDomainStr),
        of(kEnableProxyAuth, &Common::setUseProxyCertificationInfo),
        of(kProxyUserName, &Common::setProxyAccountStr, Preference::Base64),
        of(kProxyUserPass, &Common::setProxyPasswordStr, Preference::Base64Secret),
        of(kEnableSsl30, &Common::setUseSSL30),
        of(kEnableTls10, &Common::setUseTLS10),
        of(kEnableTls11, &Common::setUseTLS11),
        of(kEnableTls12, &Common::setUseTLS12),
    };
}

QList<Preference> ofUser()
{
    using namespace vlm::userPreferences;
    return {
        of(kHome, &User::setHomePage),
        of(kStartup, &User::setStartUp),
        of(kLastPage, &User::setLastPage),
        zoom(),
        of(kCookieDeleteTiming, &User::setCookieDeleteTiming),
        of(kAuthInfoDeleteTiming, &User::setCertificationDeleteTiming),
        of(kFontName, &User::setFontName),
    };
}

bool isEncoded(const Preference &preference)
{
    return preference.kind == Preference::Base64 || preference.kind == Preference::Base64Secret;
}

VLMC_XMLNode *elementOf(const Preference &preference, const Document &document)
{
    for (VLMC_XMLNode *const group : document.children()) {
        if (group->getName() == preference.group) {
            QString element = preference.element;
            return group->getXMLNodeChildByName(element);
        }
    }
    return nullptr;
}

QString hiddenBecause(const Preference &preference, const QByteArray &value)
{
    if (preference.kind == Preference::Word) {
        const QStringList known = preference.words + preference.oldWords;
        return known.contains(QString::fromUtf8(value))
                   ? QString()
                   : text("the browser does not know this value");
    }
    if (value.size() > preference.maxBytes) {
        return text("%1 bytes, over the limit of %2").arg(value.size()).arg(preference.maxBytes);
    }
    return value.isEmpty() && preference.emptyIsFallback ? text("empty") : QString();
}
} // namespace

QString profile::Preference::name() const { return group + QLatin1Char('.') + element; }

const QList<profile::Preference> &profile::preferences()
{
    static const QList<Preference> all = ofCommon() + ofUser();
    return all;
}

const profile::Preference *profile::preferenceNamed(const QString &name)
{
    for (const Preference &preference : preferences()) {
        if (name == preference.name()) {
            return &preference;
        }
    }
    return nullptr;
}

profile::PreferenceValue profile::valueOf(const Preference &preference, const Document &document)
{
    PreferenceValue value = {false, preference.fallback, QString()};
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
        QStringList all = preference.words;
        const QString last = all.takeLast();
        return text("%1 or %2").arg(all.join(text(", ")), last);
    }
    return text("at most %1 bytes%2")
        .arg(preference.maxBytes)
        .arg(text(preference.kind == Preference::Text ? " of UTF-8" : ""));
}
