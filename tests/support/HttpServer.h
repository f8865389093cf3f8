#ifndef TESTS_SUPPORT_HTTPSERVER_H
#define TESTS_SUPPORT_HTTPSERVER_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QTcpServer>

class QTcpSocket;

/// A small HTTP server on the loopback interface: one request per connection, without a body.
class HttpServer : public QTcpServer
{
    Q_OBJECT

public:
    HttpServer();

    /// The address of a page here.
    QString url(const char *path = "/") const;

protected:
    /// The response to a request, both whole; see httpResponse().
    virtual QByteArray answer(const QByteArray &request) = 0;

private slots:
    void takeConnections();
    /// From the socket that sends the signal.
    void read();
};

/// A response that ends its connection. Each of the further headers ends with "\r\n".
QByteArray httpResponse(const char *status, const QByteArray &headers, const QByteArray &body,
                        const char *type = "text/html");

/// The value of a request's header, empty when there is none.
QByteArray headerOf(const QByteArray &request, const QByteArray &name);

/// What lets a user in by the scheme "Basic".
QByteArray basicAnswer(const QByteArray &user, const QByteArray &passwd);

/// What asks a user for an answer by the scheme "Digest".
QByteArray digestChallenge(const QByteArray &realm);

/// Whether a request answers that challenge as this user would, by RFC 2617 alone.
bool hasRightDigest(const QByteArray &request, const QByteArray &realm, const QByteArray &user,
                    const QByteArray &passwd);

#endif
