#include "examples/kiosk/Preferences.h"

#include "examples/kiosk/Text.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

#include <QtGui/QFontDatabase>
#include <QtWebKit/QWebSettings>
#include <QtWebKitWidgets/QWebView>

namespace
{
const int kPagesInMemory = 8;

VLMC_BrowserCommonSetting &device() { return *VLMC_BrowserCommonSetting::getInstance(); }
VLMC_BrowserUserSetting &user() { return *VLMC_BrowserUserSetting::getInstance(); }

// Codes 1 to 11 stand for half the size up to one and a half, in tenths.
double zoomFactor(int code) { return 0.1 * (code + 4); }

// Qt takes one version, or one and all later ones, but no list. So it gets the versions that are
// switched on from the latest down to the first gap: never one that is switched off.
QSsl::SslProtocol protocol()
{
    if (device().getUseTLS12()) {
        if (!device().getUseTLS11()) {
            return QSsl::TlsV1_2OrLater;
        }
        return device().getUseTLS10() ? QSsl::TlsV1_0OrLater : QSsl::TlsV1_1OrLater;
    }
    if (device().getUseTLS11()) {
        return QSsl::TlsV1_1;
    }
    if (device().getUseTLS10()) {
        return QSsl::TlsV1_0;
    }
    // With none at all, the version that Qt refuses to speak: then no byte is sent.
    return device().getUseSSL30() ? QSsl::SslV3 : QSsl::SslV2;
}
} // namespace

Preferences::Preferences(const QString &directory) : m_directory(directory)
{
    device().loadSetting(&m_directory);
    user().loadSetting(&m_directory);
    VLMC_FontListSetting::getInstance()->loadFontList(m_directory);
    if (fonts().isEmpty()) {
        offerInstalledFonts();
    }
}

QUrl Preferences::startPage() const
{
    if (user().getStartUp() != 1) {
        return homePage();
    }
    QString url;
    user().getLastPage(&url);
    return QUrl(url);
}

QUrl Preferences::homePage() const
{
    QString url;
    user().getHomePage(&url);
    return QUrl(url);
}

void Preferences::rememberPage(const QUrl &url)
{
    // The store refuses one that is too long; the last page is then still the one before.
    if (user().setLastPage(url.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo)) == 1) {
        user().saveSetting(&m_directory);
    }
}

bool Preferences::setZoom(int code)
{
    if (code != short(code) || user().setZoomInfo(short(code)) != 1) {
        return false;
    }
    user().saveSetting(&m_directory);
    return true;
}

bool Preferences::setFont(const QString &family)
{
    if (!fonts().contains(family) || user().setFontName(family) != 1) {
        return false;
    }
    user().saveSetting(&m_directory);
    return true;
}

QStringList Preferences::fonts() const
{
    VLMC_FontListSetting *const list = VLMC_FontListSetting::getInstance();
    QStringList families;
    for (int index = 0; index < list->getCount(); ++index) {
        families.append(list->getFont(index));
    }
    families.removeAll(QString()); // those whose name is too long
    return families;
}

bool Preferences::acceptsCookies() const { return device().getRcvCookieInfo(); }

bool Preferences::usesCache() const { return device().getUseCacheInfo(); }

QSslConfiguration Preferences::security() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(protocol());
    return configuration;
}

void Preferences::applyTo(QWebView &view) const
{
    QString family;
    user().getFontName(&family);
    QWebSettings *const settings = view.settings();
    if (family.isEmpty()) {
        settings->resetFontFamily(QWebSettings::StandardFont);
    } else {
        settings->setFontFamily(QWebSettings::StandardFont, family);
    }
    settings->setAttribute(QWebSettings::JavascriptEnabled, device().getUseJavaScriptInfo());
    settings->setAttribute(QWebSettings::PluginsEnabled, device().getPlayFlashInfo());
    QWebSettings::setMaximumPagesInCache(usesCache() ? kPagesInMemory : 0);
    view.setZoomFactor(zoomFactor(user().getZoomInfo()));
}

void Preferences::save()
{
    device().saveSetting(&m_directory);
    user().saveSetting(&m_directory);
}

// The fonts of a new profile; an existing list is somebody's choice.
void Preferences::offerInstalledFonts()
{
    VLMC_FontListSetting *const list = VLMC_FontListSetting::getInstance();
    const QStringList families = QFontDatabase().families();
    for (const QString &family : families) {
        list->addFont(family);
    }
    list->saveFontList(m_directory);
}
