#include "tests/kiosk/WebServer.h"

#include "tests/support/Files.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QImage>
#include <QtNetwork/QTcpSocket>

namespace
{
const char kNonce[] = "5d1c0f2a9b";

const char *const kTitles[] = {
    "\xe5\x9b\xb3\xe6\x9b\xb8\xe9\xa4\xa8\xe3\x81\xae\xe6\x96\xb0\xe7\x9d\x80\xe6\xa1\x88\xe5\x86"
    "\x85",
    "<b>\"bold\"</b> & 'quoted' ]]> --> %1 %n",
    "\xf0\x9f\xa6\x8a beyond \xf0\xa0\xae\xb7 the plane",
    "right \xe2\x80\xab to \xe2\x80\xac left",
    "\xef\xbc\xa1\xef\xbd\xb6\xef\xbe\x9e e\xcc\x81",
};

QByteArray md5(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

QByteArray escaped(const QString &text) { return text.toHtmlEscaped().toUtf8(); }

QByteArray page(const QString &title, const QByteArray &body)
{
    return "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>" + escaped(title)
           + "</title></head><body>" + body + "</body></html>";
}

QByteArray response(const char *status, const QByteArray &headers, const QByteArray &body,
                    const char *type = "text/html")
{
    return QByteArray("HTTP/1.1 ") + status + "\r\n" + headers + "Content-Type: " + type
           + "\r\nContent-Length: " + QByteArray::number(body.size())
           + "\r\nConnection: close\r\n\r\n" + body;
}

QByteArray shown(const QByteArray &html, const QByteArray &headers = QByteArray())
{
    return response("200 OK", headers, html);
}

QByteArray picture()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(0xff2266aa);
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return content;
}

// A field of a digest: name=value or name="value".
QByteArray fieldOf(const QByteArray &digest, const QByteArray &name)
{
    const QList<QByteArray> fields = digest.mid(int(qstrlen("Digest "))).split(',');
    for (const QByteArray &field : fields) {
        const int equals = int(field.indexOf('='));
        if (field.left(equals).trimmed() == name) {
            return field.mid(equals + 1).trimmed().replace('"', "");
        }
    }
    return QByteArray();
}

bool isRightBasic(const QByteArray &answer)
{
    return answer == "Basic " + (QByteArray(kUser) + ':' + kPassword).toBase64();
}

bool isRightDigest(const QByteArray &answer)
{
    const QByteArray secret = md5(QByteArray(kUser) + ":archive:" + kPassword);
    const QByteArray request = md5("GET:" + fieldOf(answer, "uri"));
    return fieldOf(answer, "username") == kUser
           && fieldOf(answer, "response")
                  == md5(secret + ':' + kNonce + ':' + fieldOf(answer, "nc") + ':'
                         + fieldOf(answer, "cnonce") + ':' + fieldOf(answer, "qop") + ':'
                         + request);
}

QByteArray guarded(bool isRight, const QByteArray &challenge)
{
    if (isRight) {
        return shown(page(utf8("Inside"), "let in"));
    }
    return response("401 Unauthorized", "WWW-Authenticate: " + challenge + "\r\n",
                    page(utf8("Outside"), "kept out"));
}

bool hasProxyAccount(const QByteArray &request)
{
    return headerOf(request, "Proxy-Authorization")
           == "Basic " + (QByteArray(kProxyAccount) + ':' + kProxyPassword).toBase64();
}
} // namespace

WebServer::WebServer() : m_delay(0), m_asksForAccount(false)
{
    connect(this, &QTcpServer::newConnection, this, &WebServer::take);
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("no server on the loopback interface");
    }
}

QString WebServer::url(const char *path) const
{
    return utf8("http://127.0.0.1:%1%2").arg(serverPort()).arg(utf8(path));
}

QList<QByteArray> WebServer::requests(const char *path) const
{
    QList<QByteArray> found;
    for (const QByteArray &request : m_requests) {
        const QUrl target(QString::fromLatin1(request.split(' ').value(1)));
        if (target.path().startsWith(utf8(path))) {
            found.append(request);
        }
    }
    return found;
}

void WebServer::setDelay(int milliseconds) { m_delay = milliseconds; }

void WebServer::askForProxyAccount() { m_asksForAccount = true; }

QString WebServer::title(int number) { return utf8(kTitles[number]); }

int WebServer::titles() { return int(sizeof(kTitles) / sizeof(*kTitles)); }

void WebServer::take()
{
    while (QTcpSocket *const socket = nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void WebServer::read(QTcpSocket *socket)
{
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (!request.contains("\r\n\r\n")) {
        return;
    }
    m_requests.append(request);
    emit asked();
    const QUrl target(QString::fromLatin1(request.split(' ').value(1)));
    const QByteArray path = target.path().toLatin1();
    const QByteArray bytes = answer(request, path);
    QTimer::singleShot(m_delay, socket, [socket, bytes] {
        socket->write(bytes);
        socket->disconnectFromHost();
    });
}

QByteArray WebServer::answer(const QByteArray &request, const QByteArray &path) const
{
    const QUrl target(QString::fromLatin1(request.split(' ').value(1)));
    if (m_asksForAccount && !target.host().isEmpty() && !hasProxyAccount(request)) {
        return response("407 Proxy Authentication Required",
                        "Proxy-Authenticate: Basic realm=\"proxy\"\r\n", "no account");
    }
    if (path == "/page") {
        return shown(page(utf8("Page %1").arg(target.query()), "<img src=\"/picture\">text"));
    }
    if (path == "/picture") {
        return response("200 OK", QByteArray(), picture(), "image/png");
    }
    if (path == "/titles") {
        return shown(page(title(target.query().toInt()), "text"));
    }
    if (path == "/changing") {
        return shown(page(utf8("Visit %1").arg(requests("/changing").size()), "text"));
    }
    if (path == "/bell") {
        return shown(page(utf8("bell\x07 and start\x01"), "text"));
    }
    if (path == "/red") {
        return shown(page(utf8("Red"), "<style>html{background:#ff0000}</style>"));
    }
    if (path == "/redirect") {
        return response("302 Found", "Location: /page?redirected\r\n", QByteArray());
    }
    if (path == "/cookies") {
        return shown(page(utf8("Cookies"), "text"),
                     "Set-Cookie: session=b7c41f; Path=/\r\n"
                     "Set-Cookie: user=taro; Max-Age=31536000; Path=/\r\n");
    }
    if (path == "/counter") {
        return shown(page(utf8("Counter"), "text"),
                     "Set-Cookie: count=" + target.query().toLatin1() + "; Max-Age=3600\r\n");
    }
    if (path == "/many-cookies") {
        QByteArray headers;
        for (int i = 0; i < 30; ++i) {
            headers += "Set-Cookie: c" + QByteArray::number(i) + "=v; Max-Age=31536000\r\n";
        }
        return shown(page(utf8("Cookies"), "text"), headers);
    }
    if (path == "/basic") {
        return guarded(isRightBasic(headerOf(request, "Authorization")), "Basic realm=\"printer\"");
    }
    if (path == "/digest") {
        return guarded(isRightDigest(headerOf(request, "Authorization")),
                       QByteArray("Digest realm=\"archive\", qop=\"auth\", nonce=\"") + kNonce
                           + "\", algorithm=MD5");
    }
    if (path == "/cached") {
        return shown(page(utf8("Cached"), "text"), "Cache-Control: max-age=3600\r\n");
    }
    if (path == "/script") {
        return shown(page(utf8("still"), "<script>document.title = 'scripted'</script>"));
    }
    return response("404 Not Found", QByteArray(), page(utf8("Missing"), "nothing here"));
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
