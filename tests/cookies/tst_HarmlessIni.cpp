#include "cookies/HarmlessIni_p.h"

#include "tests/support/Files.h"

#include <QtCore/QSettings>

using namespace vlm;

namespace
{
const char kGroup[] = "Cookie";

// Built by QSettings, this is a number and not a text.
const char kDescribed[] = "@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)";

const char *const kNoise[] = {
    "\"",
    "\"\"",
    "\" ",
    "\"\t",
    " ",
    "\t",
    "\v",
    "\\x",
    "\\x ",
    "\\q",
    "\\\n",
    "\\\r\n",
    "\n",
    "\r",
    ",",
    ", ",
    ";",
    ";\"\n",
    "=",
    "\\",
    "\\\\",
    "@ByteArray(",
    ")",
    "@",
    "\\x40",
    "\\100",
    "V\\x0061",
    "\n[Other]",
    "\n[x]\n",
    "\n[Cookie]\n",
    "\nk=",
    "\n\"k\"=",
    "\n[%43ookie]\n",
    "\n[ Cookie]\n",
    "\n[cookie]\n",
    "\nk=@ByteArray(",
    "\nk=\"@ByteArray(",
    "\nk=@ByteArray()",
    "\n;",
    "\n;\"\n",
    "\na=\"",
    "@DateTime(",
    "\xef\xbb\xbf",
    "a",
    "4",
    "%",
};

class Noise
{
public:
    explicit Noise(uint seed) : m_state(seed) {}

    int below(int bound)
    {
        m_state = m_state * 1103515245u + 12345u;
        return int((m_state >> 16) % uint(bound));
    }

    // A file with a described value, most of them somehow disguised.
    QByteArray file()
    {
        QByteArray value = below(3) ? QByteArray(kDescribed) : "\"" + QByteArray(kDescribed) + "\"";
        if (below(3) == 0) {
            value.prepend(below(2) ? "@ByteArray(\\0)," : "@ByteArray(");
        }
        QByteArray file =
            (below(4) ? "[Cookie]\n" : "[Other]\n") + QByteArray("cookies=") + value + "\n";
        for (int i = below(6); i > 0; --i) {
            const int place = below(3) ? 9 + below(24) : below(int(file.size()) + 1);
            file.insert(qMin(place, int(file.size())),
                        kNoise[below(int(sizeof kNoise / sizeof *kNoise))]);
        }
        return file;
    }

private:
    uint m_state;
};

const char *const kPieces[] = {
    "a",    "4",      "%41",      " ",      "\t",           ";",      ",",         "=",
    ")",    "(",      "\xc3\xa9", "\x80",   "\\a",          "\\b",    "\\f",       "\\n",
    "\\r",  "\\t",    "\\v",      "\\?",    "\\'",          "\\\\",   "\\\"",      "\\q",
    "\\\n", "\\\r\n", "\\0",      "\\8",    "\\12",         "\\377x", "\\1234567", "\\x",
    "\\xg", "\\x4",   "\\x1F",    "\\xfff", "\\x123456789", "@",      "'",         "[",
    "]",    "#",
};

QByteArray pieces(Noise &noise)
{
    QByteArray text;
    for (int i = noise.below(12); i > 0; --i) {
        text += kPieces[noise.below(int(sizeof kPieces / sizeof *kPieces))];
    }
    return text;
}

bool isBuilt(const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantList) {
        const QVariantList values = value.toList();
        for (const QVariant &inner : values) {
            if (isBuilt(inner)) {
                return true;
            }
        }
    }
    return value.userType() == QMetaType::Int || value.userType() == QMetaType::QDateTime;
}

// What reading a value of the group builds, other groups aside.
bool readingBuilds(const QString &path)
{
    QSettings settings(path, QSettings::IniFormat);
    const QString group = utf8(kGroup);
    // Looks at that group only; its other keys are known from here on.
    settings.value(group + utf8("/cookies"));
    settings.beginGroup(group);
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys) {
        if (!key.isEmpty() && isBuilt(settings.value(key))) {
            return true;
        }
    }
    return false;
}

bool writingBuilds(const QString &path)
{
    QSettings settings(path, QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys) {
        if (!key.isEmpty() && isBuilt(settings.value(key))) {
            return true;
        }
    }
    return false;
}
} // namespace

class tst_HarmlessIni : public QObject
{
    Q_OBJECT

private slots:
    void isHarmless_data();
    void isHarmless();
    void isHarmless_letsNothingBeBuilt();
    void byteArray_isWhatQSettingsReads();
};

void tst_HarmlessIni::isHarmless_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("group");
    QTest::addColumn<bool>("whole");
    const QByteArray head("[Cookie]\ncookies=");
    const QByteArray bytes("@ByteArray(\\0@Variant()\n");
    QTest::newRow("empty") << QByteArray() << true << true;
    QTest::newRow("byte array") << head + bytes << true << true;
    QTest::newRow("quoted") << head + "\"@ByteArray(@Variant(;,)\"\n" << true << true;
    QTest::newRow("CRLF") << QByteArray("[Cookie]\r\ncookies=@ByteArray(@Variant()\r\n") << true
                          << true;
    QTest::newRow("no line feed") << head + "@ByteArray(@Variant()" << true << true;
    QTest::newRow("another key before") << "[Cookie]\nversion=1\ncookies=" + bytes << true << true;
    QTest::newRow("another key behind") << head + bytes + "version=1\n" << true << true;
    QTest::newRow("described") << head + "@Variant()\n" << false << false;
    QTest::newRow("time") << head + "@DateTime()\n" << false << false;
    QTest::newRow("described beside") << head + bytes + "k=@Variant()\n" << false << false;
    QTest::newRow("described before")
        << "[Cookie]\nk=@Variant()\ncookies=" + bytes << false << false;
    QTest::newRow("no group") << QByteArray("k=@Variant()\n") << false << false;
    QTest::newRow("another group before")
        << "[Use]\nk=@DateTime()\n" + head + bytes << true << false;
    QTest::newRow("another group behind") << head + bytes + "[Use]\nk=@DateTime()\n"
                                          << true << false;
    QTest::newRow("group again") << head + bytes + "[Use]\na=1\n[Cookie]\nk=@Variant()\n"
                                 << false << false;
    QTest::newRow("group in other letters")
        << "[COOKIE]\nk=@Variant()\n" + head + bytes << false << false;
    QTest::newRow("group escaped") << QByteArray("[%43ookie]\nk=@Variant()\n") << false << false;
    QTest::newRow("group without end") << QByteArray("[Use\nk=@Variant()\n") << false << false;
    QTest::newRow("comment") << head + bytes + ";k=@Variant()\n" << true << true;
    QTest::newRow("behind a semicolon") << head + bytes + "k=1;@Variant()\n" << true << true;
    QTest::newRow("quote in a comment")
        << QByteArray(";\"\n[Cookie]\nk=@Variant()\n") << false << false;
    QTest::newRow("group between quotes") << head + "\"\n[Use]\n\"\nk=@Variant()\n"
                                          << false << false;
    QTest::newRow("line goes on") << head + "\\\n[Use]\nk=@Variant()\n" << false << false;
    QTest::newRow("key with quotes")
        << QByteArray("[Cookie]\n\"k=\"=\"@ByteArray(,@Variant()\"\n") << false << false;
    QTest::newRow("key that takes an equals sign in quotes")
        << QByteArray("[Cookie]\n\"k=\"@ByteArray(=@Variant()\"") << false << false;
    QTest::newRow("key that takes an equals sign behind a backslash")
        << QByteArray("[Cookie]\nk\\=@ByteArray(=@Variant()\n") << false << false;
    QTest::newRow("line goes on behind CRLF") << head + "\\\r\n[Use]\nk=@Variant()\n"
                                              << false << false;
    QTest::newRow("line goes on behind LFCR") << head + "\\\n\r[Use]\nk=@Variant()\n"
                                              << false << false;
    QTest::newRow("no group behind a vertical tab") << head + bytes + "\v[Use]\nk=@Variant()\n"
                                                    << false << false;
    QTest::newRow("escaped quote") << head + "\"@ByteArray(\\\"@Variant(\\\\)\"\n" << true << true;
    QTest::newRow("quote left open") << head + "\"@ByteArray(@Variant()" << true << true;
    QTest::newRow("hexadecimal") << head + "\"\\x40V\\x061riant()\"\n" << false << false;
    QTest::newRow("octal") << head + "\"\\100V\\141riant()\"\n" << false << false;
    QTest::newRow("two values") << head + "@ByteArray(),@Variant()\n" << false << false;
    QTest::newRow("tail behind quotes") << head + "\"@ByteArray()\"@Variant()\n" << false << false;
}

void tst_HarmlessIni::isHarmless()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, group);
    QFETCH(bool, whole);
    QCOMPARE(isHarmlessIni(file, kGroup), group);
    QCOMPARE(isHarmlessIni(file), whole);
}

// Whatever disguise, QSettings must not find a described value in what is called harmless. The
// other files are not opened: noise may have got into the description.
void tst_HarmlessIni::isHarmless_letsNothingBeBuilt()
{
    const int rounds = 30000;
    const TestDirectory directory;
    Noise noise(1);
    int harmless = 0;
    for (int round = 0; round < rounds; ++round) {
        const QByteArray content = noise.file();
        if (!isHarmlessIni(content, kGroup)) {
            continue;
        }
        ++harmless;
        // A name of its own for each file: of those alike QSettings would read one only.
        const QString path = directory.file((QByteArray::number(round) + ".ini").constData());
        writeFile(path, content);
        QVERIFY2(!readingBuilds(path), content.constData());
        QVERIFY2(!isHarmlessIni(content) || !writingBuilds(path), content.constData());
        QVERIFY(QFile::remove(path));
    }
    QVERIFY2(harmless > rounds / 10, QByteArray::number(harmless).constData());
}

void tst_HarmlessIni::byteArray_isWhatQSettingsReads()
{
    const int rounds = 30000;
    const char *const forms[] = {"@ByteArray(%)", "\"@ByteArray(%)\"", " \"@ByteArray(%)\" ",
                                 "@ByteArray(%) \t"};
    const TestDirectory directory;
    Noise noise(2);
    int found = 0;
    for (int round = 0; round < rounds; ++round) {
        QByteArray value(forms[noise.below(4)]);
        value.replace('%', pieces(noise));
        const QByteArray content = (noise.below(2) ? "[Use]\nx=1\n[Cookie]\n" : "[Cookie]\nx=1\n")
                                   + QByteArray("cookies=") + value
                                   + (noise.below(2) ? "\ny=2\n" : "");
        const QByteArray read = byteArrayOfIni(content, kGroup, "cookies");
        if (read.isNull()) {
            continue;
        }
        ++found;
        const QString path = directory.file((QByteArray::number(round) + ".ini").constData());
        writeFile(path, content);
        const QByteArray expected =
            QSettings(path, QSettings::IniFormat).value(utf8("Cookie/cookies")).toByteArray();
        QVERIFY2(read == expected,
                 (content + "\n" + read.toHex() + "\n" + expected.toHex()).constData());
        QVERIFY(QFile::remove(path));
    }
    QVERIFY2(found > rounds / 3, QByteArray::number(found).constData());
}

QTEST_GUILESS_MAIN(tst_HarmlessIni)
#include "tst_HarmlessIni.moc"
