#ifndef EXAMPLES_KIOSK_NETWORK_H
#define EXAMPLES_KIOSK_NETWORK_H

#include <QtNetwork/QNetworkAccessManager>

class Preferences;

/// The engine's way to the network: cache, proxy, SSL and TLS as the preferences say.
class Network : public QNetworkAccessManager
{
public:
    Network(const QString &directory, const Preferences &preferences);

    /// Drops connections and credentials from before a change of the preferences.
    void forgetConnections();
    void clearDiskCache();

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &original,
                                 QIODevice *data) override;

private:
    const Preferences &m_preferences;
};

#endif
