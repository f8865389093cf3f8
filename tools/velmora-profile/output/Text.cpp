#include "tools/velmora-profile/output/Text.h"

#include "text/XmlText_p.h"

#include <QtCore/QRegularExpression>

namespace
{
const char kControlPictures[] = "\xe2\x90\x80"; // U+2400, the picture of NUL; the others follow it

// Direction overrides and isolates let a text rearrange the line that it stands in.
bool turnsDirection(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool isControl(QChar character)
{
    const ushort code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029;
}
} // namespace

QString profile::text(const char *utf8) { return QString::fromUtf8(utf8); }

QString profile::counted(qint64 count, const char *one, const char *many)
{
    return text("%1 %2").arg(count).arg(text(count == 1 ? one : many));
}

QString profile::printable(const QString &untrusted)
{
    QString line = untrusted;
    const ushort pictures = text(kControlPictures).at(0).unicode();
    for (int i = 0; i < line.size(); ++i) {
        const QChar character = line.at(i);
        if (turnsDirection(character)) {
            line[i] = QChar(QChar::ReplacementCharacter);
        } else if (isControl(character)) {
            const ushort code = character.unicode();
            line[i] =
                code < 0x20 ? QChar(ushort(pictures + code)) : QChar(QChar::ReplacementCharacter);
        }
    }
    return line;
}

QString profile::masked(const QString &secret, bool showSecrets)
{
    return secret.isEmpty() || showSecrets ? secret : text("********");
}

// By hand, as a text need not be a valid address to hold a password. Browsers take any slashes, or
// none, behind the schemes of the web. Each piece is looked at once, however many a text has.
QString profile::withoutUserInfo(const QString &address)
{
    static const QRegularExpression authority(text("(?:https?:[/\\\\]*|(?<=:)//|^//)([^/?#]*+)"),
                                              QRegularExpression::CaseInsensitiveOption);
    QString left;
    int copied = 0;
    QRegularExpressionMatchIterator found = authority.globalMatch(address);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        const int start = int(match.capturedStart(1));
        left += address.mid(copied, start - copied);
        copied = start + int(match.captured(1).lastIndexOf(QLatin1Char('@'))) + 1;
    }
    return left + address.mid(copied);
}

int profile::utf8Bytes(const QString &text) { return int(text.toUtf8().size()); }

// A carriage return reads as the end of a line, and nothing but blanks as nothing.
bool profile::isKept(const QString &text)
{
    return vlm::isXmlText(text) && !text.contains(QLatin1Char('\r'))
           && (text.isEmpty() || !text.trimmed().isEmpty());
}
