#include "tests/support/HttpServer.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QMap>
#include <QtNetwork/QTcpSocket>

namespace
{
const char kNonce[] = "5d1c0f2a9b";

QByteArray md5(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

// The fields of a digest, name=value or name="value".
QMap<QByteArray, QByteArray> fieldsOf(const QByteArray &digest)
{
    QMap<QByteArray, QByteArray> found;
    const QList<QByteArray> fields = digest.mid(int(qstrlen("Digest "))).split(',');
    for (const QByteArray &field : fields) {
        const int equals = int(field.indexOf('='));
        QByteArray value = field.mid(equals + 1).trimmed();
        if (value.startsWith('"') && value.endsWith('"')) {
            value = value.mid(1, value.size() - 2);
        }
        found[field.left(equals).trimmed()] = value;
    }
    return found;
}
} // namespace

HttpServer::HttpServer()
{
    connect(this, SIGNAL(newConnection()), SLOT(takeConnections()));
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("no server on the loopback interface");
    }
}

QString HttpServer::url(const char *path) const
{
    return QString::fromLatin1("http://127.0.0.1:%1").arg(serverPort()) + QString::fromUtf8(path);
}

void HttpServer::takeConnections()
{
    while (QTcpSocket *const socket = nextPendingConnection()) {
        connect(socket, SIGNAL(readyRead()), SLOT(read()));
        socket->connect(socket, SIGNAL(disconnected()), SLOT(deleteLater()));
    }
}

void HttpServer::read()
{
    QTcpSocket *const socket = qobject_cast<QTcpSocket *>(sender());
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (request.contains("\r\n\r\n")) {
        socket->write(answer(request));
        socket->disconnectFromHost();
    }
}

QByteArray httpResponse(const char *status, const QByteArray &headers, const QByteArray &body,
                        const char *type)
{
    return QByteArray("HTTP/1.1 ") + status + "\r\n" + headers + "Content-Type: " + type
           + "\r\nContent-Length: " + QByteArray::number(body.size())
           + "\r\nConnection: close\r\n\r\n" + body;
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

QByteArray basicAnswer(const QByteArray &user, const QByteArray &passwd)
{
    return "Basic " + (user + ':' + passwd).toBase64();
}

QByteArray digestChallenge(const QByteArray &realm)
{
    return "Digest realm=\"" + realm + "\", nonce=\"" + kNonce + "\", qop=\"auth\", algorithm=MD5";
}

bool hasRightDigest(const QByteArray &request, const QByteArray &realm, const QByteArray &user,
                    const QByteArray &passwd)
{
    const QByteArray answer = headerOf(request, "Authorization");
    const QMap<QByteArray, QByteArray> given = fieldsOf(answer);
    const QList<QByteArray> asked = request.left(request.indexOf('\r')).split(' ');
    const QByteArray expected =
        md5(md5(user + ':' + realm + ':' + passwd) + ':' + kNonce + ':' + given.value("nc") + ':'
            + given.value("cnonce") + ":auth:" + md5(asked.value(0) + ':' + asked.value(1)));
    return answer.startsWith("Digest ") && given.value("username") == user
           && given.value("nonce") == kNonce && given.value("response") == expected;
}
