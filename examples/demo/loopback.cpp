#include "examples/demo/loopback.h"

#include "examples/demo/demo.h"

#include <QtCore/QEventLoop>
#include <QtCore/QScopedPointer>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>
#include <QtNetwork/QTcpSocket>

namespace
{
const int kPatienceMilliseconds = 20000;
}

LoopbackServer::LoopbackServer(const Answer &answer) : m_answer(answer)
{
    connect(this, SIGNAL(newConnection()), SLOT(takeConnection()));
    expect(listen(QHostAddress::LocalHost), "a server on the loopback interface starts");
}

QUrl LoopbackServer::url() const { return QUrl(text("http://127.0.0.1:%1/").arg(serverPort())); }

void LoopbackServer::takeConnection()
{
    QTcpSocket *const socket = nextPendingConnection();
    connect(socket, SIGNAL(readyRead()), SLOT(read()));
    socket->connect(socket, SIGNAL(disconnected()), SLOT(deleteLater()));
}

void LoopbackServer::read()
{
    QTcpSocket *const socket = qobject_cast<QTcpSocket *>(sender());
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (request.contains("\r\n\r\n")) {
        socket->write(m_answer(request));
        socket->disconnectFromHost();
    }
}

QByteArray response(const QByteArray &status, const QList<QByteArray> &headers)
{
    QByteArray answer = "HTTP/1.1 " + status + "\r\n";
    for (const QByteArray &header : headers) {
        answer += header + "\r\n";
    }
    return answer + "Content-Length: 0\r\nConnection: close\r\n\r\n";
}

QByteArray headerOf(const QByteArray &request, const QByteArray &name)
{
    const QByteArray start = name.toLower() + ':';
    const QList<QByteArray> lines = request.split('\n');
    for (const QByteArray &line : lines) {
        if (line.toLower().startsWith(start)) {
            return line.mid(start.size()).trimmed();
        }
    }
    return QByteArray();
}

int fetch(QNetworkAccessManager &browser, const QUrl &url)
{
    const QScopedPointer<QNetworkReply> reply(browser.get(QNetworkRequest(url)));
    QEventLoop loop;
    loop.connect(reply.data(), SIGNAL(finished()), SLOT(quit()));
    QTimer patience;
    loop.connect(&patience, SIGNAL(timeout()), SLOT(quit()));
    patience.start(kPatienceMilliseconds);
    loop.exec();
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}
