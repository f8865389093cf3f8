#include "examples/kiosk/CookieJar.h"

#include "cookies/VLMC_CookieSetting.h"
#include "examples/kiosk/Preferences.h"
#include "examples/kiosk/Text.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>

namespace
{
// As many as a conversion carries.
const int kMaxCookies = 20;

const char kEngineFile[] = "cookie.ini";
const char kDocument[] = "cookie.xml";
} // namespace

CookieJar::CookieJar(const QString &directory, const Preferences &preferences)
    : m_directory(directory), m_preferences(preferences)
{
    takeOverFromKilledRun();
    QByteArray folder = m_directory.toLatin1();
    QByteArray document = folder + kDocument;
    VLMC_CookieSetting *const store = VLMC_CookieSetting::getInstance();
    store->convertCookieXMLToIni(document.data(), folder.data());
    setAllCookies(store->loadCookieInfo(&m_directory, kMaxCookies));
    // A page sets several cookies in a row: they are written together, once the engine is idle.
    m_saving.setSingleShot(true);
    connect(&m_saving, &QTimer::timeout, this, [this] { save(); });
}

bool CookieJar::setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url)
{
    if (!m_preferences.acceptsCookies() || !QNetworkCookieJar::setCookiesFromUrl(cookies, url)) {
        return false;
    }
    keepWithinLimit();
    m_saving.start(0);
    return true;
}

void CookieJar::clear()
{
    setAllCookies(QList<QNetworkCookie>());
    save();
    convertToDocument();
}

void CookieJar::stop()
{
    dropSessionCookies();
    save();
    convertToDocument();
    QFile::remove(m_directory + text(kEngineFile));
}

void CookieJar::takeOverFromKilledRun()
{
    // A lock, or a file half written; only one browser uses a profile.
    QDir folder(m_directory);
    const QStringList leftovers =
        folder.entryList(QStringList(text(kEngineFile) + text(".*")), QDir::Files);
    for (const QString &name : leftovers) {
        folder.remove(name);
    }
    // No cookie in it: perhaps it was only half written, so the document knows more.
    VLMC_CookieSetting *const store = VLMC_CookieSetting::getInstance();
    if (QFile::exists(m_directory + text(kEngineFile))
        && !store->loadCookieInfo(&m_directory, kMaxCookies).isEmpty()) {
        convertToDocument();
    }
}

// New cookies come last, so the first ones are the oldest.
void CookieJar::keepWithinLimit()
{
    const QList<QNetworkCookie> cookies = allCookies();
    if (cookies.size() > kMaxCookies) {
        setAllCookies(cookies.mid(cookies.size() - kMaxCookies));
    }
}

void CookieJar::dropSessionCookies()
{
    const QList<QNetworkCookie> cookies = allCookies();
    QList<QNetworkCookie> lasting;
    for (const QNetworkCookie &cookie : cookies) {
        if (!cookie.isSessionCookie()) {
            lasting.append(cookie);
        }
    }
    setAllCookies(lasting);
}

void CookieJar::save()
{
    m_saving.stop();
    VLMC_CookieSetting::getInstance()->saveCookieInfo(allCookies(), &m_directory, kMaxCookies);
}

void CookieJar::convertToDocument()
{
    // The conversions take their paths as Latin-1, and only read them.
    QByteArray folder = m_directory.toLatin1();
    QByteArray document = folder + kDocument;
    VLMC_CookieSetting::getInstance()->convertCookieIniToXML(folder.data(), document.data());
}
