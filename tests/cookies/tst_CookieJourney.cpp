// Cookies from a server, by way of the browser's jar, "cookie.ini", the XML file and back, to the
// server again.

#include "cookies/VLMC_CookieSetting.h"

#include "tests/support/CookieIni.h"
#include "tests/support/Files.h"
#include "tests/support/HttpServer.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkCookieJar>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <ctime>

namespace
{
typedef QList<QByteArray> Lines;

// Answers every request with the Set-Cookie headers it was given last, and notes the Cookie header
// of each request.
class CookieServer : public HttpServer
{
public:
    Lines setCookies;
    Lines received;
    QByteArray requestLine;

private:
    QByteArray answer(const QByteArray &request) override
    {
        requestLine = request.left(request.indexOf('\r'));
        received.append(headerOf(request, "Cookie"));
        QByteArray headers;
        for (const QByteArray &setCookie : setCookies) {
            headers += "Set-Cookie: " + setCookie + "\r\n";
        }
        return httpResponse("200 OK", headers, "ok");
    }
};

// The engine's jar, as far as it hands its cookies out to be kept.
class Jar : public QNetworkCookieJar
{
public:
    QList<QNetworkCookie> cookies() const { return allCookies(); }
    void setCookies(const QList<QNetworkCookie> &cookies) { setAllCookies(cookies); }
};

// A browser that has just been started: nothing remembered but what its jar is given.
class Browser
{
public:
    Browser() : m_jar(new Jar)
    {
        m_manager.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        m_manager.setCookieJar(m_jar);
    }

    // Lets every host be answered by the server, whatever its name.
    void sendAllTo(const CookieServer &server)
    {
        m_manager.setProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, utf8("127.0.0.1"), server.serverPort()));
    }

    bool visit(const QString &url)
    {
        QNetworkReply *const reply = m_manager.get(QNetworkRequest(QUrl(url)));
        QEventLoop loop;
        loop.connect(reply, SIGNAL(finished()), SLOT(quit()));
        QTimer::singleShot(20000, &loop, SLOT(quit()));
        loop.exec();
        const bool answered = reply->isFinished() && reply->error() == QNetworkReply::NoError
                              && reply->readAll() == "ok";
        delete reply;
        return answered;
    }

    Jar &jar() { return *m_jar; }

private:
    QNetworkAccessManager m_manager;
    Jar *m_jar;
};

// "a=1; b=2" in the order of the names: a jar promises none.
QByteArray sorted(const QByteArray &cookieHeader)
{
    QStringList pairs = QString::fromUtf8(cookieHeader.constData()).split(utf8("; "));
    pairs.sort();
    return pairs.join(utf8("; ")).toUtf8();
}

// What becomes of a jar's cookies between two runs of the browser: kept in cookie.ini, carried to
// the XML file, dropped there, carried back.
QList<QNetworkCookie> afterJourney(const QList<QNetworkCookie> &cookies, TestDirectory &directory)
{
    VLMC_CookieSetting *const store = VLMC_CookieSetting::getInstance();
    QString path = directory.path();
    store->saveCookieInfo(cookies, &path, 20);
    store->convertCookieIniToXML(directory.localFile(), directory.localFile("cookies.xml"));
    store->saveCookieInfo(QList<QNetworkCookie>(), &path, 20);
    store->convertCookieXMLToIni(directory.localFile("cookies.xml"), directory.localFile());
    return store->loadCookieInfo(&path, 20);
}
} // namespace

class tst_CookieJourney : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { runDeferredDeletes(); }

    void cookiesAreSentAgain();
    void hostsGetTheirOwnCookies();
    void attributesSurvive();
    void deletedCookiesStayDeleted();
    void changedValueIsSentAgain();
    void logHoldsNoSecrets();
};

void tst_CookieJourney::init()
{
    qputenv("TZ", "UTC0");
    tzset();
    takeLog();
}

void tst_CookieJourney::cookiesAreSentAgain()
{
    CookieServer server;
    const QString url = server.url();
    server.setCookies = Lines() << "session=abc123"
                                << "kept=def; Expires=Wed, 21-Oct-2037 07:28:00 GMT; Path=/"
                                << "aged=ghi; Max-Age=3600; Path=/"
                                << "script=no; HttpOnly"
                                << "quoted=\"with quotes\""
                                << "sums=1+1=2"
                                << "text=\xe3\x81\x82"
                                << "elsewhere=x; Path=/docs"
                                << "safe=y; Secure"
                                << "foreign=z; Domain=.example.com";
    Browser first;
    QVERIFY(first.visit(url));
    QCOMPARE(server.received, Lines() << "");
    server.setCookies.clear();
    QVERIFY(first.visit(url));
    const QByteArray sent = sorted(server.received.last());
    QCOMPARE(sent, QByteArray("aged=ghi; kept=def; quoted=\"with quotes\"; script=no; "
                              "session=abc123; sums=1+1=2; text=\xe3\x81\x82"));

    TestDirectory directory;
    Browser second;
    second.jar().setCookies(afterJourney(first.jar().cookies(), directory));

    QVERIFY(second.visit(url));
    QCOMPARE(sorted(server.received.last()), sent);
    QVERIFY(second.visit(url + utf8("docs/page")));
    QCOMPARE(sorted(server.received.last()),
             QByteArray("aged=ghi; elsewhere=x; kept=def; quoted=\"with quotes\"; script=no; "
                        "session=abc123; sums=1+1=2; text=\xe3\x81\x82"));
}

void tst_CookieJourney::hostsGetTheirOwnCookies()
{
    CookieServer server;
    Browser first;
    first.sendAllTo(server);
    server.setCookies = Lines() << "wide=1; Domain=.Example.COM; Path=/"
                                << "nodot=2; Domain=example.com; Path=/"
                                << "narrow=3; Path=/";
    QVERIFY(first.visit(utf8("http://shop.example.com/")));
    QCOMPARE(server.requestLine, QByteArray("GET http://shop.example.com/ HTTP/1.1"));
    server.setCookies = Lines() << "idn=4; Domain=.xn--bcher-kva.com; Path=/";
    QVERIFY(first.visit(utf8("http://www.b\xc3\xbc"
                             "cher.com/")));
    QCOMPARE(server.requestLine, QByteArray("GET http://www.xn--bcher-kva.com/ HTTP/1.1"));
    server.setCookies.clear();

    TestDirectory directory;
    Browser second;
    second.sendAllTo(server);
    second.jar().setCookies(afterJourney(first.jar().cookies(), directory));

    const char *const urls[] = {"http://shop.example.com/", "http://www.example.com/",
                                "http://example.com/", "http://www.xn--bcher-kva.com/",
                                "http://example.net/"};
    for (const char *const url : urls) {
        QVERIFY(first.visit(utf8(url)));
        const QByteArray sent = sorted(server.received.last());
        QVERIFY(second.visit(utf8(url)));
        QCOMPARE(sorted(server.received.last()), sent);
    }
    QVERIFY(second.visit(utf8("http://shop.example.com/")));
    QVERIFY(server.received.last().contains("wide=1"));
    QVERIFY(server.received.last().contains("narrow=3"));
    QVERIFY(second.visit(utf8("http://other.example.com/")));
    QVERIFY(server.received.last().contains("wide=1"));
    QVERIFY(!server.received.last().contains("narrow=3"));
    QVERIFY(second.visit(utf8("http://www.xn--bcher-kva.com/")));
    QCOMPARE(server.received.last(), QByteArray("idn=4"));
    QVERIFY(second.visit(utf8("http://example.net/")));
    QCOMPARE(server.received.last(), QByteArray());
}

void tst_CookieJourney::attributesSurvive()
{
    CookieServer server;
    Browser browser;
    browser.sendAllTo(server);
    server.setCookies = Lines() << "a=1; Secure; HttpOnly; Expires=Wed, 21-Oct-2037 07:28:00 GMT; "
                                   "Domain=.example.com; Path=/"
                                << "b=2; Domain=.example.com; Path=/shop";
    QVERIFY(browser.visit(utf8("http://www.example.com/shop/")));
    TestDirectory directory;

    afterJourney(browser.jar().cookies(), directory);

    const CookieIni ini = decodeCookieIni(readFile(directory.file("cookie.ini")));
    QVERIFY(ini.valid);
    QCOMPARE(ini.count, 2);
    // HttpOnly has no place in the XML file.
    QVERIFY(ini.rawForms.contains("a=1; secure; expires=Wed, 21-Oct-2037 07:28:00 GMT; "
                                  "domain=.example.com; path=/"));
    QVERIFY(ini.rawForms.contains("b=2; domain=.example.com; path=/shop"));
    const QByteArray document = readFile(directory.file("cookies.xml"));
    QVERIFY(document.contains("        <website>.example.com</website>\n"
                              "        <name>a</name>\n"
                              "        <path>/</path>\n"
                              "        <secure>true</secure>\n"
                              "        <expires>2037/10/21 07:28:00</expires>\n"
                              "        <contents><![CDATA[1]]></contents>\n"));
}

void tst_CookieJourney::deletedCookiesStayDeleted()
{
    CookieServer server;
    const QString url = server.url();
    TestDirectory directory;
    Browser first;
    server.setCookies = Lines() << "a=1; Path=/"
                                << "b=2; Path=/";
    QVERIFY(first.visit(url));
    afterJourney(first.jar().cookies(), directory);
    server.setCookies = Lines() << "a=; Expires=Thu, 01-Jan-1970 00:00:01 GMT; Path=/";
    QVERIFY(first.visit(url));
    server.setCookies.clear();

    Browser second;
    second.jar().setCookies(afterJourney(first.jar().cookies(), directory));

    QVERIFY(second.visit(url));
    QCOMPARE(server.received.last(), QByteArray("b=2"));
    QVERIFY(!readFile(directory.file("cookies.xml")).contains("<name>a</name>"));
}

void tst_CookieJourney::changedValueIsSentAgain()
{
    CookieServer server;
    const QString url = server.url();
    TestDirectory directory;
    Browser first;
    server.setCookies = Lines() << "a=old; Path=/";
    QVERIFY(first.visit(url));
    afterJourney(first.jar().cookies(), directory);
    server.setCookies = Lines() << "a=new; Path=/";
    QVERIFY(first.visit(url));
    server.setCookies.clear();

    Browser second;
    second.jar().setCookies(afterJourney(first.jar().cookies(), directory));

    QVERIFY(second.visit(url));
    QCOMPARE(server.received.last(), QByteArray("a=new"));
}

void tst_CookieJourney::logHoldsNoSecrets()
{
    CookieServer server;
    const QString url = server.url();
    Browser browser;
    server.setCookies = Lines() << "canaryName=canaryValue; Path=/";
    QVERIFY(browser.visit(url));
    TestDirectory directory;

    afterJourney(browser.jar().cookies(), directory);
    afterJourney(QList<QNetworkCookie>(), directory);

    QVERIFY(!loggedText().contains("canary"));
}

QTEST_GUILESS_MAIN(tst_CookieJourney)
#include "tst_CookieJourney.moc"
