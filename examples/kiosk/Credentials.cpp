#include "examples/kiosk/Credentials.h"

#include "examples/kiosk/Text.h"

#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

namespace
{
const int kMaxEntries = 50;
const int kUnauthorized = 401;
const char kAnswered[] = "answered";

// Schemes in the store's codes.
const unsigned char kBasic = 0;
const unsigned char kDigest = 1;
const unsigned char kNtlm = 2;

QString portOf(const QUrl &url)
{
    return QString::number(url.port(url.scheme() == text("https") ? 443 : 80));
}

QString originOf(const QUrl &url) { return url.host() + QLatin1Char(':') + portOf(url); }

int statusOf(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

unsigned char schemeOf(const QNetworkReply *reply)
{
    const QByteArray challenge = reply->rawHeader("WWW-Authenticate").trimmed().toLower();
    if (challenge.startsWith("digest")) {
        return kDigest;
    }
    return challenge.startsWith("ntlm") ? kNtlm : kBasic;
}
} // namespace

Credentials::Credentials(const QString &directory, QNetworkAccessManager &network)
    : m_directory(directory)
{
    VLMC_AuthSetting::getInstance()->loadAuthInfo(&m_directory, kMaxEntries);
    connect(&network, &QNetworkAccessManager::authenticationRequired, this, &Credentials::answer);
    connect(&network, &QNetworkAccessManager::finished, this, &Credentials::lookAtOutcome);
}

void Credentials::setQuestion(const Question &question) { m_question = question; }

void Credentials::clear()
{
    VLMC_AuthSetting *const store = VLMC_AuthSetting::getInstance();
    for (int id = store->getAuthInfoCnt() - 1; id >= 0; --id) {
        store->deleteAuthInfo(id);
    }
    store->saveAuthInfo(&m_directory, kMaxEntries);
    m_entered.clear();
}

// Once per page: otherwise a server would ask again and again for wrong credentials.
void Credentials::answer(QNetworkReply *reply, QAuthenticator *authenticator)
{
    if (reply->property(kAnswered).toBool()) {
        return;
    }
    const VLMS_AuthInfo none = {};
    VLMS_AuthInfo info = m_entered.value(originOf(reply->url()), none);
    const int id = find(reply->url().host(), portOf(reply->url()));
    if (info.hostName.isEmpty() && !VLMC_AuthSetting::getInstance()->getAuthInfo(id, &info)) {
        return;
    }
    authenticator->setUser(QString::fromUtf8(info.user));
    authenticator->setPassword(QString::fromUtf8(info.passwd));
    reply->setProperty(kAnswered, true);
}

void Credentials::lookAtOutcome(QNetworkReply *reply)
{
    const QString origin = originOf(reply->url());
    if (statusOf(reply) == kUnauthorized) {
        m_entered.remove(origin);
        ask(reply);
    } else if (reply->property(kAnswered).toBool() && m_entered.contains(origin)) {
        keep(*m_entered.constFind(origin));
        m_entered.remove(origin);
    }
}

void Credentials::ask(QNetworkReply *reply)
{
    VLMS_AuthInfo info = {};
    info.hostName = reply->url().host();
    info.portNum = portOf(reply->url());
    info.authType = schemeOf(reply);
    if (m_question && m_question(info)) {
        m_entered.insert(originOf(reply->url()), info);
        emit entered();
    }
}

// Replaces what is known for the host. A full list loses its oldest entry: that takes
// updateAuthInfo, which deletes one in any case.
void Credentials::keep(VLMS_AuthInfo info)
{
    VLMC_AuthSetting *const store = VLMC_AuthSetting::getInstance();
    store->deleteAuthInfo(find(info.hostName, info.portNum));
    if (store->getAuthInfoCnt() < kMaxEntries) {
        store->setAuthInfo(&info);
    } else {
        store->updateAuthInfo(&info);
    }
    store->saveAuthInfo(&m_directory, kMaxEntries);
}

// The store leaves this to its callers. -1 when nothing is known, which no entry has as its id.
int Credentials::find(const QString &host, const QString &port) const
{
    VLMC_AuthSetting *const store = VLMC_AuthSetting::getInstance();
    for (int id = 0; id < store->getAuthInfoCnt(); ++id) {
        VLMS_AuthInfo info = {};
        if (store->getAuthInfo(id, &info) && info.hostName == host && info.portNum == port) {
            return id;
        }
    }
    return -1;
}
