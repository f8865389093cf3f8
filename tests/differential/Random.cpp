#include "tests/differential/Random.h"

namespace
{
// Bytes around the limits of titles, URLs, ports and credentials.
const int kLimits[] = {5, 6, 99, 100, 101, 255, 256, 257, 272, 273, 300};
} // namespace

QString Random::word()
{
    static const char *const words[] = {
        "",   "a",    "http://a.example/", "b",    "\xe3\x81\x82", "http://b.example/?q=1&r=2",
        "]]", "  ",   "\xf0\x9f\x98\x80",  "a\nb", "<tag>",        "x",
        "80", "true", "000017.PNG",        "NTLM", "digest",       "basic"};
    if (!oneIn(8)) {
        return textOf(oneOf(words));
    }
    const int bytes = oneOf(kLimits);
    const QString wide = textOf("\xe3\x81\x82").repeated(oneIn(2) ? bytes / 3 : 0);
    return wide + QString(bytes - 3 * int(wide.size()), QLatin1Char('w'));
}

QString Random::idValue(int entries)
{
    const QString number = QString::number(below(entries + 2));
    switch (below(16)) {
    case 0:
        return textOf("");
    case 1:
        return textOf("abc");
    case 2:
        return textOf("-") + number;
    case 3:
        return textOf(" ") + number;
    case 4:
        return number + textOf("\t");
    case 5:
        return textOf("+") + number;
    case 6:
        return textOf("00000000000000") + number;
    case 7:
        return textOf("4294967296");
    case 8:
        return number + textOf(".0");
    case 9:
        return textOf("\xef\xbc\x91");
    case 10:
        return textOf("0x") + number;
    default:
        return number.rightJustified(3, QLatin1Char('0'));
    }
}

QString Random::timeText()
{
    static const char *const odd[] = {"",
                                      "abc",
                                      "2024/02/29 23:59",
                                      "2023/02/29 23:59",
                                      "2024/1/02 03:04",
                                      "2024/01/02 3:04",
                                      "2024/01/02 03:04:05",
                                      " 2024/01/02 03:04",
                                      "2024/01/02 03:04 ",
                                      "2024/01/02 03:04\n",
                                      "2024-01-02 03:04",
                                      "2024/13/02 03:04",
                                      "2024/01/02 24:00",
                                      "2024/01/02  3:04",
                                      "2024/01/0+ 03:04",
                                      "9999/12/31 23:59"};
    if (oneIn(3)) {
        return textOf(oneOf(odd));
    }
    const QDate date(2020 + below(2), 1 + below(12), 1 + below(2));
    const QTime clock(below(2), below(3));
    return QDateTime(date, clock).toString(textOf("yyyy/MM/dd hh:mm"));
}

QDateTime Random::time()
{
    if (oneIn(6)) {
        return QDateTime();
    }
    const QDate date(2020 + below(2), 1 + below(12), 1 + below(2));
    const int seconds = below(60);
    return QDateTime(date, QTime(below(2), 0, seconds));
}

QString textOf(const char *utf8) { return QString::fromUtf8(utf8); }
