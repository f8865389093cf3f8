// Credentials from the store to a server that asks for them, and new ones from the user by way of
// "authinfo.xml" to the server again.

#include "cookies/VLMC_AuthSetting.h"

#include "core/VLMG_Debug.h"
#include "tests/support/Files.h"
#include "tests/support/HttpServer.h"
#include "tests/support/LogFile.h"
#include "tests/support/PlatformRecorder.h"
#include "tests/support/SavedDocuments.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

namespace
{
enum Scheme { Basic, Digest };

const char kUser[] = "canary user";
// What XML and the header of a digest would have to escape, if they saw it.
const char kPasswd[] = "canary: <&>]]>\"\\ s3cr3t";

const char kRealm[] = "house";

// Lets one user in, by one scheme, and works the answers to its challenges out by itself.
class GuardedServer : public HttpServer
{
public:
    GuardedServer(Scheme wanted, const QByteArray &name, const QByteArray &secret)
        : scheme(wanted), user(name), passwd(secret), welcomed(0), challenged(0)
    {
    }

    QString port() const { return QString::number(serverPort()); }

    Scheme scheme;
    QByteArray user;
    QByteArray passwd;
    int welcomed;
    int challenged;

private:
    QByteArray answer(const QByteArray &request) override
    {
        if (isWelcome(request)) {
            ++welcomed;
            return httpResponse("200 OK", QByteArray(), "ok");
        }
        ++challenged;
        return httpResponse("401 Unauthorized", "WWW-Authenticate: " + challenge() + "\r\n", "ok");
    }

    bool isWelcome(const QByteArray &request) const
    {
        return scheme == Basic ? headerOf(request, "Authorization") == basicAnswer(user, passwd)
                               : hasRightDigest(request, kRealm, user, passwd);
    }

    QByteArray challenge() const
    {
        return scheme == Basic ? QByteArray("Basic realm=\"") + kRealm + '"'
                               : digestChallenge(kRealm);
    }
};

// A browser that has just been started. It answers a challenge with the newest entry of the store
// for the host and port, and where there is none with what its user enters; it stores that. It
// answers a request once: what was refused is not tried again.
class Browser : public QObject
{
    Q_OBJECT

public:
    explicit Browser(VLMC_AuthSetting &credentials)
        : hasEntered(false), asked(0), m_store(credentials), m_answered(false)
    {
        m_manager.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        connect(&m_manager, SIGNAL(authenticationRequired(QNetworkReply *, QAuthenticator *)),
                SLOT(answer(QNetworkReply *, QAuthenticator *)));
    }

    /// The HTTP status; 0 when there is none.
    int visit(const QString &url)
    {
        m_answered = false;
        QNetworkReply *const reply = m_manager.get(QNetworkRequest(QUrl(url)));
        QEventLoop loop;
        loop.connect(reply, SIGNAL(finished()), SLOT(quit()));
        QTimer::singleShot(20000, &loop, SLOT(quit()));
        loop.exec();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        delete reply;
        return status;
    }

    VLMS_AuthInfo entered;
    bool hasEntered;
    int asked;

private slots:
    void answer(QNetworkReply *reply, QAuthenticator *authenticator)
    {
        ++asked;
        if (m_answered) {
            return;
        }
        m_answered = true;
        VLMS_AuthInfo info = VLMS_AuthInfo();
        if (!find(reply->url(), &info)) {
            if (!hasEntered) {
                return;
            }
            info = entered;
            m_store.setAuthInfo(&info);
        }
        authenticator->setUser(QString::fromUtf8(info.user.constData()));
        authenticator->setPassword(QString::fromUtf8(info.passwd.constData()));
    }

private:
    bool find(const QUrl &url, VLMS_AuthInfo *info)
    {
        for (int id = 0; id < m_store.getAuthInfoCnt(); ++id) {
            if (m_store.getAuthInfo(id, info) && info->hostName == url.host()
                && info->portNum == QString::number(url.port())) {
                return true;
            }
        }
        return false;
    }

    VLMC_AuthSetting &m_store;
    QNetworkAccessManager m_manager;
    bool m_answered;
};

VLMS_AuthInfo credentialsFor(const GuardedServer &server, const QByteArray &user,
                             const QByteArray &passwd)
{
    const VLMS_AuthInfo info = {utf8("127.0.0.1"), server.port(),
                                static_cast<unsigned char>(server.scheme), user, passwd};
    return info;
}
} // namespace

class tst_AuthJourney : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void storedCredentialsAnswer_data() { addSchemes(); }
    void storedCredentialsAnswer();
    void newCredentialsAnswerAgain_data() { addSchemes(); }
    void newCredentialsAnswerAgain();
    void wrongCredentialsAreTurnedAway_data() { addSchemes(); }
    void wrongCredentialsAreTurnedAway();
    void noCredentialsAreTurnedAway_data() { addSchemes(); }
    void noCredentialsAreTurnedAway();
    void newestEntryAnswers_data() { addSchemes(); }
    void newestEntryAnswers();
    void serversGetTheirOwnCredentials();
    void sinksHoldNoCredentials_data() { addSchemes(); }
    void sinksHoldNoCredentials();

private:
    static void addSchemes();
};

void tst_AuthJourney::cleanup()
{
    runDeferredDeletes();
    VLMG_DebugSetLogLevel(0);
    setLogFile(QByteArray());
    takePlatformCalls();
}

void tst_AuthJourney::addSchemes()
{
    QTest::addColumn<int>("scheme");
    QTest::newRow("basic") << int(Basic);
    QTest::newRow("digest") << int(Digest);
}

void tst_AuthJourney::storedCredentialsAnswer()
{
    QFETCH(int, scheme);
    TestDirectory directory;
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    writeFile(directory.file("authinfo.xml"),
              "<authentication><authInfo><hostName>127.0.0.1</hostName><portNum>"
                  + server.port().toUtf8() + "</portNum><authType>"
                  + (scheme == Basic ? "basic" : "digest") + "</authType><user><![CDATA["
                  + QByteArray(kUser).toBase64() + "]]></user><passwd><![CDATA["
                  + QByteArray(kPasswd).toBase64() + "]]></passwd></authInfo></authentication>");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    Browser browser(store);

    QCOMPARE(browser.visit(server.url()), 200);

    QCOMPARE(browser.asked, 1);
    QCOMPARE(server.challenged, 1);
    QCOMPARE(server.welcomed, 1);
}

void tst_AuthJourney::newCredentialsAnswerAgain()
{
    QFETCH(int, scheme);
    TestDirectory directory;
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    {
        VLMC_AuthSetting store;
        store.loadAuthInfo(directory.pathPointer(), 10);
        Browser browser(store);
        browser.entered = credentialsFor(server, kUser, kPasswd);
        browser.hasEntered = true;
        QCOMPARE(browser.visit(server.url()), 200);
        QCOMPARE(store.getAuthInfoCnt(), 1);
        store.saveAuthInfo(directory.pathPointer(), 10);
    }
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    Browser browser(store);

    QCOMPARE(browser.visit(server.url()), 200);

    QCOMPARE(browser.asked, 1);
    QCOMPARE(server.challenged, 2);
    QCOMPARE(server.welcomed, 2);
    VLMS_AuthInfo info = VLMS_AuthInfo();
    QVERIFY(store.getAuthInfo(0, &info));
    QCOMPARE(int(info.authType), scheme);
}

void tst_AuthJourney::wrongCredentialsAreTurnedAway()
{
    QFETCH(int, scheme);
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = credentialsFor(server, kUser, "canary: wrong");
    QVERIFY(store.setAuthInfo(&info));
    Browser browser(store);

    QCOMPARE(browser.visit(server.url()), 401);

    QCOMPARE(server.welcomed, 0);
    QCOMPARE(server.challenged, 2);
    QCOMPARE(browser.asked, 2);
}

void tst_AuthJourney::noCredentialsAreTurnedAway()
{
    QFETCH(int, scheme);
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    VLMC_AuthSetting store;
    Browser browser(store);

    QCOMPARE(browser.visit(server.url()), 401);

    QCOMPARE(server.welcomed, 0);
    QCOMPARE(browser.asked, 1);
}

void tst_AuthJourney::newestEntryAnswers()
{
    QFETCH(int, scheme);
    TestDirectory directory;
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 2);
    VLMS_AuthInfo old = credentialsFor(server, kUser, "canary: old");
    VLMS_AuthInfo current = credentialsFor(server, kUser, kPasswd);
    QVERIFY(store.setAuthInfo(&old));
    QVERIFY(store.setAuthInfo(&old));
    QVERIFY(store.updateAuthInfo(&current));
    store.saveAuthInfo(directory.pathPointer(), 2);
    store.loadAuthInfo(directory.pathPointer(), 2);
    QCOMPARE(store.getAuthInfoCnt(), 2);
    Browser browser(store);

    QCOMPARE(browser.visit(server.url()), 200);

    QCOMPARE(server.challenged, 1);
}

void tst_AuthJourney::serversGetTheirOwnCredentials()
{
    TestDirectory directory;
    GuardedServer first(Basic, "first user", "first passwd");
    GuardedServer second(Digest, "second user", "second passwd");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo forFirst = credentialsFor(first, "first user", "first passwd");
    VLMS_AuthInfo forSecond = credentialsFor(second, "second user", "second passwd");
    QVERIFY(store.setAuthInfo(&forFirst));
    QVERIFY(store.setAuthInfo(&forSecond));
    store.saveAuthInfo(directory.pathPointer(), 10);
    store.loadAuthInfo(directory.pathPointer(), 10);
    Browser browser(store);

    QCOMPARE(browser.visit(first.url()), 200);
    QCOMPARE(browser.visit(second.url()), 200);

    store.deleteAuthInfo(1);
    Browser forgetful(store);
    QCOMPARE(forgetful.visit(first.url()), 401);
    QCOMPARE(forgetful.visit(second.url()), 200);
}

// The real log, with both of its sinks and at the level that lets everything through.
void tst_AuthJourney::sinksHoldNoCredentials()
{
    QFETCH(int, scheme);
    const ForeignDocuments overTheLimit;
    TestDirectory directory;
    setLogFile(directory.localFile("log"));
    VLMG_DebugSetLogLevel(VLMG_LogTrace);
    GuardedServer server(static_cast<Scheme>(scheme), kUser, kPasswd);
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    Browser browser(store);
    browser.entered = credentialsFor(server, kUser, kPasswd);
    browser.hasEntered = true;
    QCOMPARE(browser.visit(server.url()), 200);
    VLMS_AuthInfo wrong = credentialsFor(server, QByteArray(kUser).repeated(30), kPasswd);
    QVERIFY(!store.updateAuthInfo(&wrong));
    store.addAuthInfo(&wrong);
    store.saveAuthInfo(directory.pathPointer(), 10);
    store.loadAuthInfo(directory.pathPointer(), 10);
    store.deleteAuthInfo(0);

    const QByteArray file = readFile(directory.file("log"));
    QByteArray systemLog;
    const QList<QByteArray> texts = takeSystemLog();
    for (const QByteArray &text : texts) {
        systemLog += text + '\n';
    }

    const QByteArray sinks[] = {file, systemLog};
    for (const QByteArray &sink : sinks) {
        QVERIFY(sink.contains("[VLMC_AuthSetting::saveAuthInfo] end"));
        QVERIFY(!sink.contains("canary"));
        QVERIFY(!sink.contains("127.0.0.1"));
        QVERIFY(!sink.contains(QByteArray(kUser).left(9).toBase64()));
        QVERIFY(!sink.contains(QByteArray(kPasswd).left(21).toBase64()));
    }
}

QTEST_GUILESS_MAIN(tst_AuthJourney)
#include "tst_AuthJourney.moc"
