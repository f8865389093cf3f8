#include "tools/velmora-profile/formats/Formats.h"

#include <QtCore/QDateTime>

namespace
{
using profile::Loss;

const char kHttpOnly[] = "#HttpOnly_";

// domain, whether hosts below it count, path, secure, expiry in seconds since 1970, name, value.
const int kFields = 7;

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

bool isYes(const QByteArray &field) { return field.toUpper() == "TRUE"; }

QByteArray yesOrNo(bool yes) { return yes ? "TRUE" : "FALSE"; }

QDateTime fromSeconds(qint64 seconds)
{
    return QDateTime::fromMSecsSinceEpoch(seconds * 1000).toUTC();
}

// A reason to refuse the line, or empty.
QString readLine(const QByteArray &line, QList<QNetworkCookie> *cookies)
{
    const bool isHttpOnly = line.startsWith(kHttpOnly);
    const QList<QByteArray> fields =
        (isHttpOnly ? line.mid(int(sizeof kHttpOnly) - 1) : line).split('\t');
    if (fields.size() != kFields) {
        return text("it has %1 fields instead of 7").arg(fields.size());
    }
    bool isNumber = false;
    const qint64 expiry = fields.at(4).toLongLong(&isNumber);
    if (!isNumber || fields.at(5).isEmpty()) {
        return isNumber ? text("its cookie has no name") : text("its expiry is no number");
    }
    QNetworkCookie cookie(fields.at(5), fields.at(6));
    const QString host = QString::fromUtf8(fields.at(0));
    const bool needsDot = isYes(fields.at(1)) && !host.startsWith(QLatin1Char('.'));
    cookie.setDomain(needsDot ? QLatin1Char('.') + host : host);
    cookie.setPath(QString::fromUtf8(fields.at(2)));
    cookie.setSecure(isYes(fields.at(3)));
    cookie.setHttpOnly(isHttpOnly);
    if (expiry != 0) {
        cookie.setExpirationDate(fromSeconds(expiry));
    }
    cookies->append(cookie);
    return QString();
}

bool hasControl(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) {
            return true;
        }
    }
    return false;
}

QByteArray lineOf(const QNetworkCookie &cookie)
{
    const QByteArray domain = cookie.domain().toUtf8();
    const qint64 expiry = cookie.isSessionCookie()
                              ? 0
                              : qMax(cookie.expirationDate().toMSecsSinceEpoch() / 1000, qint64(1));
    return (cookie.isHttpOnly() ? QByteArray(kHttpOnly) : QByteArray()) + domain + '\t'
           + yesOrNo(domain.startsWith('.')) + '\t' + cookie.path().toUtf8() + '\t'
           + yesOrNo(cookie.isSecure()) + '\t' + QByteArray::number(expiry) + '\t' + cookie.name()
           + '\t' + cookie.value() + '\n';
}
} // namespace

profile::CookieImport profile::readCookiesTxt(const QByteArray &content)
{
    CookieImport import;
    const QList<QByteArray> lines = content.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        QByteArray line = lines.at(i);
        if (line.endsWith('\r')) {
            line.chop(1);
        }
        if (line.isEmpty() || (line.startsWith('#') && !line.startsWith(kHttpOnly))) {
            continue;
        }
        const QString reason = readLine(line, &import.cookies);
        if (!reason.isEmpty()) {
            import.losses.append({text("line %1").arg(i + 1), reason});
        }
    }
    if (import.cookies.isEmpty() && !import.losses.isEmpty()) {
        import.error = text("it holds no line of a cookies.txt");
    }
    return import;
}

QByteArray profile::writeCookiesTxt(const QList<QNetworkCookie> &cookies, QList<Loss> *losses)
{
    QByteArray content = "# Netscape HTTP Cookie File\n";
    for (const QNetworkCookie &cookie : cookies) {
        if (hasControl(cookie.name()) || hasControl(cookie.value())
            || hasControl(cookie.domain().toUtf8()) || hasControl(cookie.path().toUtf8())) {
            losses->append({QString::fromUtf8(cookie.name()),
                            text("a line cannot hold its control characters")});
            continue;
        }
        content += lineOf(cookie);
    }
    return content;
}
