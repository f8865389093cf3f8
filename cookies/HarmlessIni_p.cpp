#include "cookies/HarmlessIni_p.h"

#include <cstring>

namespace
{
// True for a file that holds the one value as a byte array and nothing else, as QSettings writes
// it.
bool isOneByteArray(const QByteArray &file)
{
    const QByteArray start("[Cookie]\ncookies=");
    const QByteArray value = file.mid(int(start.size())).trimmed();
    const bool quoted = value.startsWith('"');
    if (!file.startsWith(start) || !value.mid(quoted).startsWith("@ByteArray(")) {
        return false;
    }
    for (int i = quoted; i < value.size(); ++i) {
        const char byte = value.at(i);
        if (byte == '\\') {
            ++i;
        } else if (byte == '"') {
            return quoted && i == value.size() - 1;
        } else if (byte == '\n' || byte == '\r' || (!quoted && (byte == ',' || byte == ';'))) {
            return false;
        }
    }
    return !quoted;
}

// The bytes with numeric escapes resolved and all that QSettings may pass over left out.
QByteArray unescaped(const QByteArray &file)
{
    QByteArray bytes;
    for (int i = 0; i < file.size(); ++i) {
        if (file.at(i) != '\\') {
            if (!strchr("\"\r\n", file.at(i))) {
                bytes.append(file.at(i));
            }
            continue;
        }
        const bool hex = file.mid(i + 1, 1) == "x";
        const char *const digits = hex ? "0123456789abcdefABCDEF" : "01234567";
        const int start = i + 1 + hex;
        int end = start;
        while (end < file.size() && file.at(end) && strchr(digits, file.at(end))) {
            ++end;
        }
        // In either base three digits hold the low byte.
        const int from = qMax(start, end - 3);
        if (end > start) {
            bytes.append(char(file.mid(from, end - from).toUInt(nullptr, hex ? 16 : 8)));
        }
        i = end > start ? end - 1 : i + 1;
    }
    return bytes;
}
} // namespace

bool vlm::isHarmlessIni(const QByteArray &file)
{
    if (isOneByteArray(file)) {
        return true;
    }
    const QByteArray bytes = unescaped(file);
    return !bytes.contains("@Variant(") && !bytes.contains("@DateTime(");
}
