#include "tests/identical/Draw.h"

namespace
{
const char *const kTexts[] = {"",
                              "a",
                              "http://www.example.com/?a=1&b=2;c",
                              "\xC3\xA9t\xC3\xA9",
                              "\xE3\x81\x82\xE3\x82\xA2\xE6\xBC\xA2\xE5\xAD\x97",
                              "\xF0\x9F\x98\x80",
                              "e\xCC\x81\xE2\x80\x8D",
                              "]]>",
                              "a]]>b]]",
                              "\"quoted\" 'too'",
                              "<tag a=\"1\"/>&amp;",
                              "; = \\ % \\x41 \\n",
                              " ",
                              "\t\n\r",
                              "one\ntwo\r\nthree\rfour",
                              " blank at both ends ",
                              "\xC2\xA0\xE3\x80\x80",
                              "80",
                              "NTLM",
                              "000017.PNG",
                              "thumbnail/000123.PNG"};

// What XML cannot carry: controls, non-characters, halves of pairs; and what looks alike but can.
const ushort kUnits[] = {0x0001, 0x0008, 0x000B, 0x001F, 0x007F, 0x0085, 0x2028, 0xD800,
                         0xDFFF, 0xFDCF, 0xFDD0, 0xFDEF, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF};

// Bytes at which texts of the stores end.
const int kLimits[] = {5, 80, 100, 253, 256, 272};

// One draw per statement, here and everywhere: compilers choose the order within one.
int besideLimit(Draw &draw)
{
    const int limit = draw.oneOf(kLimits);
    return limit + draw.below(3) - 1;
}

QString limitText(Draw &draw)
{
    const int bytes = besideLimit(draw);
    const int wide = draw.oneIn(2) ? draw.below(bytes / 3 + 1) : 0;
    return QString(wide, QChar(0x3042)) + QString(bytes - 3 * wide, QLatin1Char('w'));
}

QString oddText(Draw &draw)
{
    // Too long for a port, whatever the odd character counts.
    QString text = QString::fromLatin1("peculiar");
    const int place = draw.below(9);
    text.insert(place, QChar(draw.oneOf(kUnits)));
    return text;
}
} // namespace

// The upper half of Knuth's generator: its lower bits repeat early.
int Draw::below(int bound)
{
    m_state = m_state * Q_UINT64_C(6364136223846793005) + Q_UINT64_C(1442695040888963407);
    return int(quint32(m_state >> 32) % quint32(bound));
}

QString Draw::text() { return oneIn(8) ? oddText(*this) : utf8Text(); }

QString Draw::utf8Text() { return oneIn(8) ? limitText(*this) : QString::fromUtf8(oneOf(kTexts)); }

QByteArray Draw::bytes()
{
    QByteArray bytes;
    const int size = oneIn(3) ? besideLimit(*this) : below(12);
    for (int i = 0; i < size; ++i) {
        bytes.append(char(below(256)));
    }
    return bytes;
}

QDateTime Draw::time()
{
    static const QDate days[] = {QDate(2026, 3, 29), QDate(2026, 10, 25), QDate(2026, 7, 1),
                                 QDate(1970, 1, 1),  QDate(2037, 12, 31), QDate(1999, 12, 31),
                                 QDate(2000, 2, 29)};
    if (oneIn(8)) {
        return QDateTime();
    }
    const QDate day = oneOf(days);
    const int minute = below(24 * 60);
    // Qt's versions part over times that the clock skips, from two to three.
    const int hour = minute / 60 == 2 ? 3 : minute / 60;
    return QDateTime(day, QTime(hour, minute % 60, below(60)));
}
