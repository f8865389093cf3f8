#include "examples/kiosk/ProxyChoice.h"

#include "examples/kiosk/Text.h"
#include "preferences/VLMC_BrowserCommonSetting.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

namespace
{
VLMC_BrowserCommonSetting &device() { return *VLMC_BrowserCommonSetting::getInstance(); }

// A domain stands for itself and for all names below it.
bool isInDomain(const QString &host, const QString &domain)
{
    return host.compare(domain, Qt::CaseInsensitive) == 0
           || host.endsWith(QLatin1Char('.') + domain, Qt::CaseInsensitive);
}

// The store takes any text; here domains are separated by commas, semicolons or blanks.
bool bypassesProxy(const QString &host)
{
    QString stored;
    device().getNoProxyDomainStr(&stored);
    QStringList domains = stored.split(QRegularExpression(text("[,;\\s]+")));
    domains.removeAll(QString());
    for (const QString &domain : qAsConst(domains)) {
        if (isInDomain(host, domain)) {
            return true;
        }
    }
    return false;
}

QNetworkProxy proxyFor(const QUrl &url)
{
    QString host;
    QString port;
    device().getProxyServerStr(&host);
    if (url.scheme() == text("https")) {
        device().getProxyHttpsPortStr(&port);
    } else {
        device().getProxyHttpPortStr(&port);
    }
    QNetworkProxy proxy(QNetworkProxy::HttpProxy, host, port.toUShort());
    if (device().getUseProxyCertificationInfo()) {
        QByteArray account;
        QByteArray password;
        device().getProxyAccountStr(&account);
        device().getProxyPasswordStr(&password);
        proxy.setUser(QString::fromUtf8(account));
        proxy.setPassword(QString::fromUtf8(password));
    }
    return proxy;
}
} // namespace

QList<QNetworkProxy> ProxyChoice::queryProxy(const QNetworkProxyQuery &query)
{
    QNetworkProxy proxy(QNetworkProxy::NoProxy);
    if (device().getUseProxyInfo() && !bypassesProxy(query.peerHostName())) {
        proxy = proxyFor(query.url());
    }
    return QList<QNetworkProxy>() << proxy;
}
