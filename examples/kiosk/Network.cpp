#include "examples/kiosk/Network.h"

#include "examples/kiosk/Preferences.h"
#include "examples/kiosk/ProxyChoice.h"
#include "examples/kiosk/Text.h"

#include <QtNetwork/QNetworkDiskCache>
#include <QtNetwork/QNetworkRequest>

Network::Network(const QString &directory, const Preferences &preferences)
    : m_preferences(preferences)
{
    QNetworkDiskCache *const files = new QNetworkDiskCache(this);
    files->setCacheDirectory(directory + text("cache"));
    setCache(files);
    setProxyFactory(new ProxyChoice); // which is this object's from now on
}

void Network::forgetConnections() { clearAccessCache(); }

void Network::clearDiskCache() { cache()->clear(); }

QNetworkReply *Network::createRequest(Operation operation, const QNetworkRequest &original,
                                      QIODevice *data)
{
    QNetworkRequest request(original);
    request.setSslConfiguration(m_preferences.security());
    if (!m_preferences.usesCache()) {
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                             QNetworkRequest::AlwaysNetwork);
        request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    }
    return QNetworkAccessManager::createRequest(operation, request, data);
}
