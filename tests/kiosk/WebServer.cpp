#include "tests/kiosk/WebServer.h"

#include "tests/support/Files.h"

#include <QtCore/QBuffer>
#include <QtCore/QUrl>
#include <QtGui/QImage>

namespace
{
const char *const kTitles[] = {
    "\xe5\x9b\xb3\xe6\x9b\xb8\xe9\xa4\xa8\xe3\x81\xae\xe6\x96\xb0\xe7\x9d\x80\xe6\xa1\x88\xe5\x86"
    "\x85",
    "<b>\"bold\"</b> & 'quoted' ]]> --> %1 %n",
    "\xf0\x9f\xa6\x8a beyond \xf0\xa0\xae\xb7 the plane",
    "right \xe2\x80\xab to \xe2\x80\xac left",
    "\xef\xbc\xa1\xef\xbd\xb6\xef\xbe\x9e e\xcc\x81",
};

QByteArray escaped(const QString &text) { return text.toHtmlEscaped().toUtf8(); }

QByteArray page(const QString &title, const QByteArray &body)
{
    return "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>" + escaped(title)
           + "</title></head><body>" + body + "</body></html>";
}

QByteArray shown(const QByteArray &html, const QByteArray &headers = QByteArray())
{
    return httpResponse("200 OK", headers, html);
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

QByteArray guarded(bool isRight, const QByteArray &challenge)
{
    if (isRight) {
        return shown(page(utf8("Inside"), "let in"));
    }
    return httpResponse("401 Unauthorized", "WWW-Authenticate: " + challenge + "\r\n",
                        page(utf8("Outside"), "kept out"));
}

bool hasProxyAccount(const QByteArray &request)
{
    return headerOf(request, "Proxy-Authorization") == basicAnswer(kProxyAccount, kProxyPassword);
}
} // namespace

WebServer::WebServer() : m_asksForAccount(false) {}

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

void WebServer::askForProxyAccount() { m_asksForAccount = true; }

QString WebServer::title(int number) { return utf8(kTitles[number]); }

int WebServer::titles() { return int(sizeof(kTitles) / sizeof(*kTitles)); }

QByteArray WebServer::answer(const QByteArray &request)
{
    m_requests.append(request);
    emit asked();
    const QUrl target(QString::fromLatin1(request.split(' ').value(1)));
    const QByteArray path = target.path().toLatin1();
    if (m_asksForAccount && !target.host().isEmpty() && !hasProxyAccount(request)) {
        return httpResponse("407 Proxy Authentication Required",
                            "Proxy-Authenticate: Basic realm=\"proxy\"\r\n", "no account");
    }
    if (path == "/page") {
        return shown(page(utf8("Page %1").arg(target.query()), "<img src=\"/picture\">text"));
    }
    if (path == "/picture") {
        return httpResponse("200 OK", QByteArray(), picture(), "image/png");
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
        return httpResponse("302 Found", "Location: /page?redirected\r\n", QByteArray());
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
        return guarded(headerOf(request, "Authorization") == basicAnswer(kUser, kPassword),
                       "Basic realm=\"printer\"");
    }
    if (path == "/digest") {
        return guarded(hasRightDigest(request, "archive", kUser, kPassword),
                       digestChallenge("archive"));
    }
    if (path == "/cached") {
        return shown(page(utf8("Cached"), "text"), "Cache-Control: max-age=3600\r\n");
    }
    if (path == "/script") {
        return shown(page(utf8("still"), "<script>document.title = 'scripted'</script>"));
    }
    return httpResponse("404 Not Found", QByteArray(), page(utf8("Missing"), "nothing here"));
}
