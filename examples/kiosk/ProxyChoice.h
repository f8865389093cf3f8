#ifndef EXAMPLES_KIOSK_PROXYCHOICE_H
#define EXAMPLES_KIOSK_PROXYCHOICE_H

#include <QtNetwork/QNetworkProxyFactory>

/// Answers the engine's questions for a proxy from the preferences of the device as they are then.
class ProxyChoice : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;
};

#endif
