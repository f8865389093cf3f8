#ifndef LOOPBACKSERVER_H
#define LOOPBACKSERVER_H

#include <QtCore/QByteArray>
#include <QtCore/QEventLoop>
#include <QtCore/QList>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

/// A small HTTP server on the loopback interface; a connection has one request and one answer.
class LoopbackServer : public QTcpServer
{
public:
    LoopbackServer()
    {
        connect(this, &QTcpServer::newConnection, this, &LoopbackServer::takeConnection);
        if (!listen(QHostAddress::LocalHost)) {
            qFatal("no loopback server");
        }
    }

protected:
    /// The status line and headers, each line with its end, for a request without a body.
    virtual QByteArray headersFor(const QByteArray &request) = 0;

    /// The value of a request's header, its name in small letters; empty when there is none.
    static QByteArray header(const QByteArray &request, const QByteArray &name)
    {
        QByteArray value;
        const QList<QByteArray> lines = request.split('\n');
        for (const QByteArray &line : lines) {
            if (line.toLower().startsWith(name + ':')) {
                value = line.mid(name.size() + 1).trimmed();
            }
        }
        return value;
    }

private:
    void takeConnection()
    {
        QTcpSocket *const socket = nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

    void read(QTcpSocket *socket)
    {
        const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
        socket->setProperty("request", request);
        if (request.contains("\r\n\r\n")) {
            socket->write(headersFor(request) + "Content-Length: 2\r\nConnection: close\r\n\r\nok");
            socket->disconnectFromHost();
        }
    }
};

/// Runs the event loop until the reply is there, or for 20 seconds.
inline void waitFor(QNetworkReply *reply)
{
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    loop.exec();
}

#endif
