#include "examples/demo/demo.h"
#include "examples/demo/loopback.h"

#include "cookies/VLMC_AuthSetting.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QStringList>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

namespace
{
const int kMaxEntries = 10;
const unsigned char kBasic = 0;
const unsigned char kDigest = 1;
const char kUser[] = "hanako";
const char kPassword[] = "correct horse";
const char kBasicChallenge[] = "Basic realm=\"printer\"";
const char kDigestChallenge[] =
    "Digest realm=\"archive\", qop=\"auth\", nonce=\"5d1c0f2a9b\", algorithm=MD5";

QByteArray md5(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

// A field of a digest: name=value or name="value".
QByteArray fieldOf(const QByteArray &digest, const QByteArray &name)
{
    const QList<QByteArray> fields = digest.mid(int(qstrlen("Digest "))).split(',');
    for (const QByteArray &field : fields) {
        const int equals = int(field.indexOf('='));
        if (field.left(equals).trimmed() == name) {
            return field.mid(equals + 1).trimmed().replace('"', "");
        }
    }
    return QByteArray();
}

// The server's side: is this the answer of somebody who knows the password?
bool isRightBasic(const QByteArray &answer)
{
    return answer == "Basic " + (QByteArray(kUser) + ':' + kPassword).toBase64();
}

bool isRightDigest(const QByteArray &answer)
{
    const QByteArray nonce = fieldOf(answer, "nonce");
    const QByteArray secret = md5(QByteArray(kUser) + ":archive:" + kPassword);
    const QByteArray request = md5("GET:" + fieldOf(answer, "uri"));
    const QByteArray expected =
        md5(secret + ':' + nonce + ':' + fieldOf(answer, "nc") + ':' + fieldOf(answer, "cnonce")
            + ':' + fieldOf(answer, "qop") + ':' + request);
    return answer.startsWith("Digest ") && nonce == "5d1c0f2a9b"
           && fieldOf(answer, "username") == kUser && fieldOf(answer, "response") == expected;
}

LoopbackServer::Answer guardedBy(const char *challenge, bool (*isRight)(const QByteArray &))
{
    return [challenge, isRight](const QByteArray &request) {
        if (isRight(headerOf(request, "Authorization"))) {
            return response("200 OK", QList<QByteArray>());
        }
        return response("401 Unauthorized", QList<QByteArray>()
                                                << QByteArray("WWW-Authenticate: ") + challenge);
    };
}
} // namespace

// The browser's side: gives the newest entry for the host and port, once per page. Otherwise the
// server would ask again and again for wrong credentials.
class StoredCredentials : public QObject
{
    Q_OBJECT

public slots:
    void answer(QNetworkReply *reply, QAuthenticator *authenticator)
    {
        VLMC_AuthSetting *const store = VLMC_AuthSetting::getInstance();
        const QString port = QString::number(reply->url().port(80));
        for (int id = 0; id < store->getAuthInfoCnt() && !reply->property("answered").toBool();
             ++id) {
            VLMS_AuthInfo info = {};
            if (store->getAuthInfo(id, &info) && info.hostName == reply->url().host()
                && info.portNum == port) {
                authenticator->setUser(QString::fromUtf8(info.user.constData()));
                authenticator->setPassword(QString::fromUtf8(info.passwd.constData()));
                reply->setProperty("answered", true);
            }
        }
    }
};

namespace
{
int visit(const QUrl &url)
{
    QNetworkAccessManager browser;
    browser.setProxy(QNetworkProxy::NoProxy);
    StoredCredentials credentials;
    credentials.connect(&browser, SIGNAL(authenticationRequired(QNetworkReply *, QAuthenticator *)),
                        SLOT(answer(QNetworkReply *, QAuthenticator *)));
    return fetch(browser, url);
}

void keep(const LoopbackServer &server, unsigned char authType)
{
    VLMS_AuthInfo info = {};
    info.hostName = server.url().host();
    info.portNum = QString::number(server.serverPort());
    info.authType = authType;
    info.user = kUser;
    info.passwd = kPassword;
    expect(VLMC_AuthSetting::getInstance()->setAuthInfo(&info), "the credentials are accepted");
}
} // namespace

void showCredentials(const QString &profile)
{
    heading("Credentials: two servers that ask for a password, answered from authinfo.xml");
    QString directory = profile;
    const LoopbackServer printer(guardedBy(kBasicChallenge, isRightBasic));
    const LoopbackServer archive(guardedBy(kDigestChallenge, isRightDigest));
    VLMC_AuthSetting *const store = VLMC_AuthSetting::getInstance();
    store->loadAuthInfo(&directory, kMaxEntries);
    expect(visit(printer.url()) == 401 && visit(archive.url()) == 401,
           "nobody gets in without a password");
    say(text("Neither server lets a browser in without a password."));

    keep(printer, kBasic);
    keep(archive, kDigest);
    store->saveAuthInfo(&directory, kMaxEntries);
    store->loadAuthInfo(&directory, kMaxEntries);
    say(text("What the user entered (%1 for both) is saved and loaded again.").arg(text(kMasked)));

    expect(visit(printer.url()) == 200, "the basic challenge is met");
    say(text("Basic: the printer's server lets us in."));
    expect(visit(archive.url()) == 200, "the digest challenge is met");
    say(text("Digest: the archive's server lets us in."));
    const QStringList secrets = QStringList()
                                << QString::fromLatin1(QByteArray(kUser).toBase64())
                                << QString::fromLatin1(QByteArray(kPassword).toBase64());
    printFile(directory + text("authinfo.xml"), secrets);
}

#include "credentials.moc"
