#include "tests/support/CookieIni.h"

namespace
{
const char kHead[] = "[Cookie]\ncookies=";
const char kOpen[] = "@ByteArray(";

int hexDigit(char digit) { return int(QByteArray("0123456789abcdef").indexOf(digit)); }

// The character behind a backslash that stands for a single byte, or -1.
int plainEscape(char letter)
{
    const QByteArray letters("abfnrtv\"\\0");
    const QByteArray bytes("\a\b\f\n\r\t\v\"\\\0", 10);
    const int index = int(letters.indexOf(letter));
    return index < 0 ? -1 : uchar(bytes.at(index));
}

// Takes the quotes and the escapes away.
bool unescape(QByteArray text, QByteArray *bytes)
{
    if (text.startsWith('"')) {
        if (text.size() < 2 || !text.endsWith('"')) {
            return false;
        }
        text = text.mid(1, text.size() - 2);
    }
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != '\\') {
            bytes->append(text.at(i));
            continue;
        }
        if (++i == text.size()) {
            return false;
        }
        if (text.at(i) != 'x') {
            const int byte = plainEscape(text.at(i));
            if (byte < 0) {
                return false;
            }
            bytes->append(char(byte));
            continue;
        }
        int byte = 0;
        int digits = 0;
        while (i + 1 < text.size() && hexDigit(text.at(i + 1)) >= 0) {
            byte = byte * 16 + hexDigit(text.at(++i));
            ++digits;
        }
        if (digits < 1 || digits > 2) {
            return false;
        }
        bytes->append(char(byte));
    }
    return true;
}

quint32 numberAt(const QByteArray &bytes, int position)
{
    quint32 number = 0;
    for (int i = position; i < position + 4; ++i) {
        number = number << 8 | uchar(bytes.at(i));
    }
    return number;
}
} // namespace

CookieIni decodeCookieIni(const QByteArray &file)
{
    CookieIni ini = {false, 0, QList<QByteArray>()};
    QByteArray value;
    if (!file.startsWith(kHead) || file.indexOf('\n', int(qstrlen(kHead))) != file.size() - 1
        || !unescape(file.mid(int(qstrlen(kHead))).trimmed(), &value) || !value.startsWith(kOpen)
        || !value.endsWith(')')) {
        return ini;
    }
    const int start = int(qstrlen(kOpen));
    const QByteArray data = value.mid(start, value.size() - start - 1);
    if (data.size() < 4) {
        return ini;
    }
    ini.count = int(numberAt(data, 0));
    int position = 4;
    while (position + 4 <= data.size()) {
        const quint32 length = numberAt(data, position);
        position += 4;
        if (length == 0xFFFFFFFFu) {
            ini.rawForms.append(QByteArray());
            continue;
        }
        if (length > quint32(data.size() - position)) {
            return ini;
        }
        ini.rawForms.append(data.mid(position, int(length)));
        position += int(length);
    }
    ini.valid = position == data.size() && ini.count == ini.rawForms.size();
    return ini;
}

QByteArray number32(quint32 number)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.append(char(number >> shift & 0xFF));
    }
    return bytes;
}

QByteArray cookieStream(int count, const QList<QByteArray> &rawForms)
{
    QByteArray bytes = number32(quint32(count));
    for (const QByteArray &rawForm : rawForms) {
        bytes += number32(quint32(rawForm.size())) + rawForm;
    }
    return bytes;
}

QByteArray cookieIniOfValue(const QByteArray &value)
{
    QByteArray escaped;
    for (const char byte : value) {
        escaped += "\\x" + QByteArray::number(int(uchar(byte)), 16);
    }
    return kHead + QByteArray("\"@ByteArray(") + escaped + ")\"\n";
}

QByteArray cookieIniOf(const QList<QByteArray> &rawForms)
{
    return cookieIniOfValue(cookieStream(int(rawForms.size()), rawForms));
}
