#include "examples/demo/demo.h"
#include "examples/demo/loopback.h"

#include "cookies/VLMC_CookieSetting.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkCookieJar>
#include <QtNetwork/QNetworkProxy>

namespace
{
const int kMaxCookies = 20;
const char kSession[] = "b7c41f9e02";
const char kUser[] = "taro.example";

// What the server hands out, and what it wants to see again.
const QList<QByteArray> kSetCookies =
    QList<QByteArray>() << QByteArray("Set-Cookie: session=") + kSession + "; Path=/"
                        << QByteArray("Set-Cookie: user=") + kUser + "; Max-Age=31536000; Path=/";

// The engine's jar, with access to its cookies, which have to be kept.
class Jar : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::allCookies;
    using QNetworkCookieJar::setAllCookies;
};

// Visits the page in a browser that starts with these cookies; returns those that it ends with.
QList<QNetworkCookie> visit(const QUrl &url, const QList<QNetworkCookie> &cookies)
{
    Jar *const jar = new Jar;
    jar->setAllCookies(cookies);
    QNetworkAccessManager browser;
    browser.setProxy(QNetworkProxy::NoProxy);
    browser.setCookieJar(jar); // which owns it from now on
    expect(fetch(browser, url) == 200, "the server answers");
    return jar->allCookies();
}

bool holdsBoth(const QByteArray &cookies)
{
    return cookies.contains(QByteArray("session=") + kSession)
           && cookies.contains(QByteArray("user=") + kUser);
}
} // namespace

void showCookies(const QString &profile)
{
    heading("Cookies: from a server to cookie.ini, to an XML file, and all the way back");
    QString directory = profile;
    const QString ini = directory + text("cookie.ini");
    const QString xml = directory + text("cookies.xml");
    const QStringList secrets = QStringList() << text(kSession) << text(kUser);
    QByteArray received;
    const LoopbackServer server([&received](const QByteArray &request) {
        received = headerOf(request, "Cookie");
        return response("200 OK", kSetCookies);
    });

    const QList<QNetworkCookie> jar = visit(server.url(), QList<QNetworkCookie>());
    expect(received.isEmpty() && jar.size() == 2, "the server's cookies are in the jar");
    say(text("A new browser sent no cookie and got %1.").arg(jar.size()));

    VLMC_CookieSetting *const store = VLMC_CookieSetting::getInstance();
    store->saveCookieInfo(jar, &directory, kMaxCookies);
    printFile(ini, secrets);

    // The conversions take their paths as Latin-1.
    QByteArray directoryArgument = directory.toLatin1();
    QByteArray xmlArgument = xml.toLatin1();
    store->convertCookieIniToXML(directoryArgument.data(), xmlArgument.data());
    printFile(xml, secrets);

    expect(QFile::remove(ini), "the old cookie.ini is removed");
    store->convertCookieXMLToIni(xmlArgument.data(), directoryArgument.data());
    printFile(ini, secrets);

    visit(server.url(), store->loadCookieInfo(&directory, kMaxCookies));
    expect(holdsBoth(received), "the server gets its cookies back");
    say(text("The next browser sent them again: session=%1; user=%1").arg(text(kMasked)));
}
