#include "tools/velmora-profile/formats/Formats.h"

#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QDateTime>
#include <QtCore/QUrl>

namespace
{
using profile::CookieImport;
using profile::Loss;
using profile::text;

const char kHttpOnly[] = "#HttpOnly_";
const char kByteOrderMark[] = "\xEF\xBB\xBF";

// Either stands in the first line that a program writes.
const char kTitle[] = "HTTP Cookie File";

// domain, whether hosts below it count, path, secure, expiry in seconds since 1970, name, value.
// Editors take the tabulator in front of an empty value away.
const int kFields = 7;

// Expiries that both formats write: to the end of the year 9999. 0 is that of a session.
const qint64 kEarliest = 1;
const qint64 kLatest = Q_INT64_C(253402300799);

bool isYes(const QByteArray &field) { return field.toUpper() == "TRUE"; }

bool isYesOrNo(const QByteArray &field) { return isYes(field) || field.toUpper() == "FALSE"; }

QByteArray yesOrNo(bool yes) { return yes ? "TRUE" : "FALSE"; }

// Without the dot that says again what the flag says.
QByteArray hostOf(const QByteArray &field) { return field.startsWith('.') ? field.mid(1) : field; }

bool isUtf8(const QByteArray &field) { return QString::fromUtf8(field).toUtf8() == field; }

QDateTime fromSeconds(qint64 seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qBound(kEarliest, seconds, kLatest) * 1000).toUTC();
}

bool isInRange(qint64 seconds) { return seconds >= kEarliest && seconds <= kLatest; }

QString outOfRange()
{
    return text("its expiry is not between 1970 and 9999 and becomes the nearest");
}

// Some write nothing for the end of a session.
qint64 expiryOf(const QList<QByteArray> &fields, bool *isNumber = nullptr)
{
    return (fields.at(4).isEmpty() ? QByteArray("0") : fields.at(4)).toLongLong(isNumber);
}

// A reason to refuse the line, or empty.
QString refusal(const QList<QByteArray> &fields)
{
    bool isNumber = false;
    expiryOf(fields, &isNumber);
    if (!isYesOrNo(fields.at(1)) || !isYesOrNo(fields.at(3))) {
        return text("its second or fourth field is neither TRUE nor FALSE");
    }
    if (!isNumber) {
        return text("its expiry is no number");
    }
    if (hostOf(fields.at(0)).isEmpty() || fields.at(5).isEmpty()) {
        return text("its cookie has no domain or no name");
    }
    return isUtf8(fields.at(0)) && isUtf8(fields.at(2)) ? QString()
                                                        : text("its domain or path is no UTF-8");
}

bool isAscii(const QByteArray &bytes) { return bytes == QString::fromLatin1(bytes).toUtf8(); }

// The flag tells whether hosts below the domain get the cookie, dot or not. Other programs write
// the form that the network has of an international name, the engine the readable one.
QString domainOf(const QByteArray &field, bool withHostsBelow)
{
    const QByteArray host = hostOf(field);
    const QString readable = isAscii(host) ? QUrl::fromAce(host) : QString();
    const QString domain = readable.isEmpty() ? QString::fromUtf8(host).toLower() : readable;
    return withHostsBelow ? QLatin1Char('.') + domain : domain;
}

QNetworkCookie cookieOf(const QList<QByteArray> &fields)
{
    QNetworkCookie cookie(fields.at(5), fields.at(6));
    cookie.setDomain(domainOf(fields.at(0), isYes(fields.at(1))));
    cookie.setPath(fields.at(2).isEmpty() ? text("/") : QString::fromUtf8(fields.at(2)));
    cookie.setSecure(isYes(fields.at(3)));
    const qint64 expiry = expiryOf(fields);
    if (expiry != 0) {
        cookie.setExpirationDate(fromSeconds(expiry));
    }
    return cookie;
}

class Reader
{
public:
    Reader() : m_isTitled(false) {}

    CookieImport read(const QByteArray &content)
    {
        int begin = content.startsWith(kByteOrderMark) ? int(sizeof kByteOrderMark) - 1 : 0;
        for (int number = 1; begin < content.size() && m_import.error.isEmpty(); ++number) {
            const int found = int(content.indexOf('\n', begin));
            const int end = found < 0 ? int(content.size()) : found;
            takeLine(content.mid(begin, end - begin), number);
            begin = end + 1;
        }
        if (m_import.cookies.isEmpty() && !m_isTitled && m_import.error.isEmpty()) {
            m_import.error = text("it holds no line of a cookies.txt");
        }
        return m_import;
    }

private:
    void takeLine(QByteArray line, int number)
    {
        if (line.endsWith('\r')) {
            line.chop(1);
        }
        const bool isHttpOnly = line.startsWith(kHttpOnly);
        if (isHttpOnly) {
            line.remove(0, int(sizeof kHttpOnly) - 1);
        } else if (line.startsWith('#')) {
            m_isTitled = m_isTitled || line.contains(kTitle);
            return;
        }
        if (!line.isEmpty()) {
            takeCookie(line, isHttpOnly, text("line %1").arg(number));
        }
    }

    void takeCookie(const QByteArray &line, bool isHttpOnly, const QString &where)
    {
        // Counted first: a line of nothing else would become a list of millions.
        const int count = int(line.count('\t')) + 1;
        if (count != kFields && count != kFields - 1) {
            lose(where, text("it has %1 instead of 7 fields").arg(count));
            return;
        }
        QList<QByteArray> fields = line.split('\t');
        if (count < kFields) {
            fields.append(QByteArray());
        }
        const QString reason = refusal(fields);
        if (!reason.isEmpty()) {
            lose(where, reason);
            return;
        }
        const qint64 expiry = expiryOf(fields);
        if (expiry != 0 && !isInRange(expiry)) {
            lose(where, outOfRange());
        }
        m_import.cookies.append(cookieOf(fields));
        m_import.cookies.last().setHttpOnly(isHttpOnly);
        refuseAbove(int(m_import.cookies.size()));
    }

    void lose(const QString &where, const QString &reason)
    {
        m_import.losses.append({where, reason});
        refuseAbove(int(m_import.losses.size()));
    }

    void refuseAbove(int count)
    {
        if (count > profile::kMaxImported) {
            m_import.error = text("it has over %1 lines").arg(profile::kMaxImported);
        }
    }

    CookieImport m_import;
    bool m_isTitled;
};

bool hasControl(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) {
            return true;
        }
    }
    return false;
}

QByteArray domainFieldOf(const QString &domain)
{
    const bool hasDot = domain.startsWith(QLatin1Char('.'));
    const QString host = hasDot ? domain.mid(1) : domain;
    const QByteArray ace = isAscii(host.toUtf8()) ? QByteArray() : QUrl::toAce(host);
    return (hasDot ? QByteArray(".") : QByteArray()) + (ace.isEmpty() ? host.toUtf8() : ace);
}

qint64 secondsOf(const QNetworkCookie &cookie)
{
    return cookie.expirationDate().toMSecsSinceEpoch() / 1000;
}

QByteArray lineOf(const QNetworkCookie &cookie)
{
    const QByteArray domain = domainFieldOf(cookie.domain());
    const QByteArray path = cookie.path().isEmpty() ? QByteArray("/") : cookie.path().toUtf8();
    const qint64 expiry =
        cookie.isSessionCookie() ? 0 : qBound(kEarliest, secondsOf(cookie), kLatest);
    return (cookie.isHttpOnly() ? QByteArray(kHttpOnly) : QByteArray()) + domain + '\t'
           + yesOrNo(domain.startsWith('.')) + '\t' + path + '\t' + yesOrNo(cookie.isSecure())
           + '\t' + QByteArray::number(expiry) + '\t' + cookie.name() + '\t' + cookie.value()
           + '\n';
}

// A reason to leave the cookie out, or empty. Readers take a line apart at its tabulators and pass
// over what is empty.
QString refusal(const QNetworkCookie &cookie)
{
    if (hasControl(cookie.name()) || hasControl(cookie.value())
        || hasControl(cookie.domain().toUtf8()) || hasControl(cookie.path().toUtf8())) {
        return text("a line cannot hold its control characters");
    }
    if (cookie.domain().startsWith(QLatin1Char('#'))) {
        return text("a line that begins like its domain is a comment");
    }
    return cookie.domain().isEmpty() || cookie.name().isEmpty()
               ? text("a line cannot do without a domain and a name")
               : QString();
}
} // namespace

profile::CookieImport profile::readCookiesTxt(const QByteArray &content)
{
    return Reader().read(content);
}

QByteArray profile::writeCookiesTxt(const QList<QNetworkCookie> &cookies, QList<Loss> *losses)
{
    QByteArray content = "# Netscape HTTP Cookie File\n";
    for (const QNetworkCookie &cookie : cookies) {
        const QString entry = QString::fromUtf8(cookie.name());
        const QString reason = refusal(cookie);
        if (!reason.isEmpty()) {
            losses->append({entry, reason});
            continue;
        }
        if (!cookie.isSessionCookie() && !isInRange(secondsOf(cookie))) {
            losses->append({entry, outOfRange()});
        }
        content += lineOf(cookie);
    }
    return content;
}
