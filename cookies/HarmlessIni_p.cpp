#include "cookies/HarmlessIni_p.h"

#include <QtCore/QString>

#include <cctype>
#include <cstring>

namespace
{
bool isOneOf(char byte, const char *bytes) { return byte && strchr(bytes, byte); }

// Where the next line begins, as QSettings sees it: after blanks, empty lines and comments. A line
// that was cut at a ";" continues as a comment.
int lineStart(const QByteArray &file, int from)
{
    int i = from;
    while (i < file.size() && (isOneOf(file.at(i), " \t\r\n") || file.at(i) == ';')) {
        if (file.at(i) == ';') {
            while (i < file.size() && !isOneOf(file.at(i), "\r\n")) {
                ++i;
            }
        } else {
            ++i;
        }
    }
    return i;
}

// Where that line ends: neither between quotes nor after a backslash.
int lineEnd(const QByteArray &file, int start)
{
    bool quoted = false;
    for (int i = start; i < file.size(); ++i) {
        const char byte = file.at(i);
        if (byte == '\\') {
            const QByteArray pair = file.mid(i + 1, 2);
            i += pair == "\r\n" || pair == "\n\r" ? 2 : 1;
        } else if (byte == '"') {
            quoted = !quoted;
        } else if (!quoted && isOneOf(byte, "\r\n;")) {
            return i;
        }
    }
    return int(file.size());
}

// True for a line "[name]" whose name is certainly not another spelling of the group's.
bool startsOtherGroup(const QByteArray &line, const QByteArray &group)
{
    const QByteArray name = line.mid(1, line.indexOf(']') - 1);
    for (const char byte : name) {
        if (!isalnum(static_cast<unsigned char>(byte))) {
            return false;
        }
    }
    return line.contains(']') && name.toLower() != group.toLower();
}

// True for a value that is a byte array and nothing else, in which these texts do no harm.
bool isByteArray(const QByteArray &line)
{
    const int equals = int(line.indexOf('='));
    const QByteArray key = line.left(equals);
    const QByteArray value = line.mid(equals + 1).trimmed();
    const bool quoted = value.startsWith('"');
    if (equals < 0 || key.contains('"') || key.contains('\\')
        || !value.mid(quoted).startsWith("@ByteArray(")) {
        return false;
    }
    for (int i = quoted; i < value.size(); ++i) {
        const char byte = value.at(i);
        if (byte == '\\') {
            ++i;
        } else if (byte == '"') {
            return quoted && i == value.size() - 1;
        } else if (!quoted && byte == ',') {
            return false;
        }
    }
    return true;
}

// The lines of the group, or of all groups, that are not byte arrays.
QByteArray doubtfulLines(const QByteArray &file, const QByteArray &group)
{
    QByteArray doubtful;
    bool counts = true;
    int start = lineStart(file, 0);
    while (start < file.size()) {
        const int end = lineEnd(file, start);
        const QByteArray line = file.mid(start, end - start);
        if (line.startsWith('[')) {
            counts = group.isEmpty() || !startsOtherGroup(line, group);
        }
        if (counts && !isByteArray(line)) {
            doubtful += line + '\n';
        }
        start = lineStart(file, end);
    }
    return doubtful;
}

// The bytes with numeric escapes resolved, without anything that QSettings may skip.
QByteArray unescaped(const QByteArray &file)
{
    QByteArray bytes;
    for (int i = 0; i < file.size(); ++i) {
        if (file.at(i) != '\\') {
            if (!isOneOf(file.at(i), "\" \t\r\n")) {
                bytes.append(file.at(i));
            }
            continue;
        }
        const bool hex = file.mid(i + 1, 1) == "x";
        const char *const digits = hex ? "0123456789abcdefABCDEF" : "01234567";
        const int start = i + 1 + hex;
        int end = start;
        while (end < file.size() && isOneOf(file.at(end), digits)) {
            ++end;
        }
        // In either base three digits are enough for the low byte.
        const int from = qMax(start, end - 3);
        if (end > start) {
            bytes.append(char(file.mid(from, end - from).toUInt(nullptr, hex ? 16 : 8)));
        }
        i = end > start ? end - 1 : i + 1;
    }
    return bytes;
}
// Appends the character of a numeric escape and returns where it ends.
int appendNumber(const QByteArray &text, int from, bool hex, QString *to)
{
    const char *const digits = hex ? "0123456789abcdefABCDEF" : "01234567";
    uint number = 0;
    int i = from;
    for (; i < text.size() && isOneOf(text.at(i), digits); ++i) {
        number = number * (hex ? 16 : 8) + QByteArray(1, text.at(i)).toUInt(nullptr, 16);
    }
    to->append(QChar(ushort(number)));
    return i;
}

// Appends what stands behind a backslash and returns where it ends. What QSettings does not know,
// such as a line's end, gives nothing.
int appendEscaped(const QByteArray &text, int from, QString *to)
{
    static const char kCodes[] = "abfnrtv\"?'\\";
    static const char kMeanings[] = "\a\b\f\n\r\t\v\"?'\\";
    const char code = text.at(from);
    if (isOneOf(code, kCodes)) {
        to->append(QLatin1Char(kMeanings[strchr(kCodes, code) - kCodes]));
        return from + 1;
    }
    if (code == 'x' && from + 1 < text.size()
        && isxdigit(static_cast<unsigned char>(text.at(from + 1)))) {
        return appendNumber(text, from + 1, true, to);
    }
    if (isOneOf(code, "01234567")) {
        return appendNumber(text, from, false, to);
    }
    const QByteArray pair = text.mid(from, 2);
    return from + (pair == "\r\n" || pair == "\n\r" ? 2 : 1);
}

QString decoded(const QByteArray &bytes)
{
#if QT_VERSION >= 0x060000
    return QString::fromUtf8(bytes);
#else
    return QString::fromLatin1(bytes.constData(), bytes.size());
#endif
}

// Of a value without the quotes around it.
QString valueText(const QByteArray &value)
{
    QString text;
    int i = 0;
    while (i < value.size()) {
        if (value.at(i) == '\\') {
            i = i + 1 < value.size() ? appendEscaped(value, i + 1, &text) : i + 1;
            continue;
        }
        const int end = int(value.indexOf('\\', i));
        const int stop = end < 0 ? int(value.size()) : end;
        text += decoded(value.mid(i, stop - i));
        i = stop;
    }
    return text;
}

// Of a line that is a byte array and nothing else.
QByteArray byteArrayOf(const QByteArray &line)
{
    QByteArray value = line.mid(line.indexOf('=') + 1).trimmed();
    if (value.startsWith('"')) {
        value = value.mid(1, value.size() - (value.endsWith('"') ? 2 : 1));
    }
    const QString text = valueText(value);
    const int head = int(strlen("@ByteArray("));
    return text.endsWith(QLatin1Char(')')) ? text.mid(head, text.size() - head - 1).toLatin1()
                                           : QByteArray();
}
} // namespace

QByteArray vlm::byteArrayOfIni(const QByteArray &file, const QByteArray &group,
                               const QByteArray &key)
{
    QByteArray found;
    bool counts = false;
    int start = lineStart(file, 0);
    while (start < file.size()) {
        const int end = lineEnd(file, start);
        const QByteArray line = file.mid(start, end - start);
        if (line.startsWith('[')) {
            counts = line.mid(1, line.indexOf(']') - 1).trimmed() == group;
        } else if (counts && line.left(line.indexOf('=')).trimmed() == key) {
            found = isByteArray(line) ? byteArrayOf(line) : QByteArray();
        }
        start = lineStart(file, end);
    }
    return found;
}

bool vlm::isHarmlessIni(const QByteArray &file, const QByteArray &group)
{
    const QByteArray bytes = unescaped(doubtfulLines(file, group));
    return !bytes.contains("@Variant(") && !bytes.contains("@DateTime(");
}
