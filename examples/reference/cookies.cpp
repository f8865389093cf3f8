#include "cookies/VLMC_CookieSetting.h"
#include "examples/reference/Reference.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

namespace
{
void start(const QString &directory)
{
    //! [cookies: at the start]
    // XML to "cookie.ini", for the engine. Both arguments are only read.
    QByteArray xmlPath = (directory + QString::fromUtf8("cookies.xml")).toLatin1();
    QByteArray iniDirectory = directory.toLatin1();
    VLMC_CookieSetting *store = VLMC_CookieSetting::getInstance();
    store->convertCookieXMLToIni(xmlPath.data(), iniDirectory.data());
    //! [cookies: at the start]
}

void stop(const QString &directory)
{
    //! [cookies: at the end]
    QByteArray iniDirectory = directory.toLatin1();
    QByteArray xmlPath = (directory + QString::fromUtf8("cookies.xml")).toLatin1();
    VLMC_CookieSetting *store = VLMC_CookieSetting::getInstance();
    store->convertCookieIniToXML(iniDirectory.data(), xmlPath.data()); // the store is empty again
    //! [cookies: at the end]
}

QList<QNetworkCookie> jar(QString directory, const QList<QNetworkCookie> &news)
{
    //! [cookies: jar]
    VLMC_CookieSetting *store = VLMC_CookieSetting::getInstance();
    QList<QNetworkCookie> cookies = store->loadCookieInfo(&directory, 20); // all, whatever the max
    cookies += news;
    store->saveCookieInfo(cookies, &directory, 20); // replaces the file's content
    //! [cookies: jar]
    return cookies;
}

QStringList sites(const QString &directory)
{
    //! [cookies: look]
    // Outside a conversion the document is loaded and dropped by hand.
    VLMC_CookieSetting *store = VLMC_CookieSetting::getInstance();
    QString path = directory + QString::fromUtf8("cookies.xml");
    store->load(path);
    QStringList sites;
    const QList<VLMS_CookieInfo> stored = store->getAllCookieInfo();
    for (const VLMS_CookieInfo &info : stored) {
        sites.append(info.website);
    }
    store->deleteAllSetting();
    //! [cookies: look]
    return sites;
}
} // namespace

void exampleOfCookies(QString directory)
{
    const QList<QNetworkCookie> news = QNetworkCookie::parseCookies(
        "session=abc123; domain=www.example.com; path=/; secure\n"
        "language=ja; expires=Wed, 21-Oct-2037 07:28:00 GMT; domain=.example.com; path=/shop");
    start(directory); // no XML file yet: no cookies
    EXPECT(jar(directory, news).size() == 2);
    stop(directory);
    EXPECT(sites(directory) == QStringList() << utf8("www.example.com") << utf8(".example.com"));
    EXPECT(QFile::remove(directory + utf8("cookie.ini")));
    start(directory);
    EXPECT(jar(directory, QList<QNetworkCookie>()).first().value() == "abc123");
}
