#ifndef KIOSK_PROXYCHOICE_H
#define KIOSK_PROXYCHOICE_H

#include <QtNetwork/QNetworkProxyFactory>

/// Answers the engine's question for a proxy from the preferences of the device, each time anew.
class ProxyChoice : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;
};

#endif
