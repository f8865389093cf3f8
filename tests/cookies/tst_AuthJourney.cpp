// Challenges of a server, answered from the credentials in the store.

#include "cookies/VLMC_AuthSetting.h"

#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/LoopbackServer.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QRegularExpression>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkRequest>

namespace
{
const char kUser[] = "canaryUser";
const char kPasswd[] = "canary:pass word";
const char kRealm[] = "things of value";
const char kNonce[] = "dcd98b7102dd2f0e";

QByteArray md5(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

// Lets in whoever proves to know the user name and the password.
class GuardedServer : public LoopbackServer
{
public:
    enum Scheme { Basic, Digest, DigestWithQop };

    explicit GuardedServer(Scheme scheme) : m_scheme(scheme) {}

private:
    QByteArray headersFor(const QByteArray &request) override
    {
        const QByteArray given = header(request, "authorization");
        if (m_scheme == Basic ? provesBasic(given) : provesDigest(given)) {
            return "HTTP/1.1 200 OK\r\n";
        }
        return "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: " + challenge() + "\r\n";
    }

    QByteArray challenge() const
    {
        const QByteArray realm = QByteArray("realm=\"") + kRealm + '"';
        if (m_scheme == Basic) {
            return "Basic " + realm;
        }
        return "Digest " + realm + ", nonce=\"" + kNonce + "\", algorithm=MD5"
               + (m_scheme == DigestWithQop ? ", qop=\"auth\"" : "");
    }

    static bool provesBasic(const QByteArray &given)
    {
        return given == "Basic " + (QByteArray(kUser) + ':' + kPasswd).toBase64();
    }

    static QByteArray field(const QByteArray &given, const char *name)
    {
        const QRegularExpression pattern(
            QString::fromLatin1("[ ,]%1=\"?([^\",]*)").arg(QLatin1String(name)));
        return pattern.match(QString::fromLatin1(given)).captured(1).toLatin1();
    }

    bool provesDigest(const QByteArray &given) const
    {
        const QByteArray secret = md5(QByteArray(kUser) + ':' + kRealm + ':' + kPasswd);
        const QByteArray asked = md5("GET:" + field(given, "uri"));
        QByteArray between = kNonce;
        if (m_scheme == DigestWithQop) {
            between += ':' + field(given, "nc") + ':' + field(given, "cnonce") + ":auth";
        }
        return given.startsWith("Digest ") && field(given, "username") == kUser
               && field(given, "nonce") == kNonce
               && field(given, "response") == md5(secret + ':' + between + ':' + asked);
    }

    Scheme m_scheme;
};

// Asks as the browser does: finds the entry by host and port, and gives up after one attempt.
int visit(VLMC_AuthSetting &store, const GuardedServer &server)
{
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    bool answered = false;
    const auto answer = [&store, &answered](QNetworkReply *reply, QAuthenticator *authenticator) {
        for (int id = 0; id < store.getAuthInfoCnt() && !answered; ++id) {
            VLMS_AuthInfo info;
            if (store.getAuthInfo(id, &info) && info.hostName == reply->url().host()
                && info.portNum == QString::number(reply->url().port())) {
                authenticator->setUser(QString::fromUtf8(info.user));
                authenticator->setPassword(QString::fromUtf8(info.passwd));
                answered = true;
            }
        }
    };
    QObject::connect(&manager, &QNetworkAccessManager::authenticationRequired, &manager, answer);
    const QString url = QString::fromLatin1("http://127.0.0.1:%1/page").arg(server.serverPort());
    const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(QUrl(url))));
    waitFor(reply.data());
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

VLMS_AuthInfo infoFor(const GuardedServer &server, const QByteArray &passwd)
{
    VLMS_AuthInfo info;
    info.hostName = utf8("127.0.0.1");
    info.portNum = QString::number(server.serverPort());
    info.authType = 1;
    info.user = kUser;
    info.passwd = passwd;
    return info;
}
} // namespace

class tst_AuthJourney : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void challengeIsAnswered_data();
    void challengeIsAnswered();
};

void tst_AuthJourney::challengeIsAnswered_data()
{
    QTest::addColumn<int>("scheme");
    QTest::newRow("basic") << int(GuardedServer::Basic);
    QTest::newRow("digest") << int(GuardedServer::Digest);
    QTest::newRow("digest with qop") << int(GuardedServer::DigestWithQop);
}

void tst_AuthJourney::challengeIsAnswered()
{
    QFETCH(int, scheme);
    const GuardedServer server(static_cast<GuardedServer::Scheme>(scheme));
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    QCOMPARE(visit(store, server), 401);

    VLMS_AuthInfo info = infoFor(server, kPasswd);
    QVERIFY(store.setAuthInfo(&info));
    QCOMPARE(visit(store, server), 200);

    store.saveAuthInfo(directory.pathPointer(), 5);
    VLMC_AuthSetting later;
    later.loadAuthInfo(directory.pathPointer(), 5);
    QCOMPARE(visit(later, server), 200);

    VLMS_AuthInfo wrong = infoFor(server, "canaryWrong");
    QVERIFY(later.updateAuthInfo(&wrong));
    QCOMPARE(later.getAuthInfoCnt(), 1);
    QCOMPARE(visit(later, server), 401);
    QVERIFY(!loggedText().contains("canary"));
}

QTEST_GUILESS_MAIN(tst_AuthJourney)
#include "tst_AuthJourney.moc"
