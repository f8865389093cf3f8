// How texts are printed.

#include "tests/support/Files.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtTest/QtTest>

using namespace profile;

class tst_Text : public QObject
{
    Q_OBJECT

private slots:
    void counted_takesTheSingularForOne();
    void printable_showsWhatSteersATerminal_data();
    void printable_showsWhatSteersATerminal();
    void masked_hidesTheLengthOfSecrets();
    void withoutUserInfo_leavesTheRestOfAnAddress_data();
    void withoutUserInfo_leavesTheRestOfAnAddress();
};

void tst_Text::counted_takesTheSingularForOne()
{
    QCOMPARE(counted(0, "entry", "entries"), text("0 entries"));
    QCOMPARE(counted(1, "entry", "entries"), text("1 entry"));
    QCOMPARE(counted(3, "entry", "entries"), text("3 entries"));
}

void tst_Text::printable_showsWhatSteersATerminal_data()
{
    QTest::addColumn<QString>("untrusted");
    QTest::addColumn<QString>("printed");
    QTest::newRow("plain") << text("a b") << text("a b");
    QTest::newRow("letters of any script") << text("日本 é") << text("日本 é");
    QTest::newRow("escape") << text("\x1b[2J") << text("␛[2J");
    QTest::newRow("ends of lines") << text("a\r\nb\tc") << text("a␍␊b␉c");
    QTest::newRow("delete") << text("a\x7f") << text("a\xef\xbf\xbd");
    QTest::newRow("control sequence introducer") << text("\xc2\x9b") << text("\xef\xbf\xbd");
    // Overrides are U+202A to U+202E, isolates U+2066 to U+2069.
    for (const int code : {0x202a, 0x202e, 0x2066, 0x2069}) {
        QTest::newRow(QByteArray::number(code, 16).constData())
            << QString(QChar(ushort(code))) << text("\xef\xbf\xbd");
    }
    for (const int code : {0x2027, 0x202f, 0x2065, 0x206a}) {
        QTest::newRow(QByteArray::number(code, 16).constData())
            << QString(QChar(ushort(code))) << QString(QChar(ushort(code)));
    }
}

void tst_Text::printable_showsWhatSteersATerminal()
{
    QFETCH(QString, untrusted);
    QFETCH(QString, printed);
    QCOMPARE(printable(untrusted), printed);
}

void tst_Text::masked_hidesTheLengthOfSecrets()
{
    QCOMPARE(masked(text("a")), text("********"));
    QCOMPARE(masked(text("a secret of some length")), text("********"));
    QCOMPARE(masked(text("a"), true), text("a"));
    QCOMPARE(masked(QString()), QString());
}

void tst_Text::withoutUserInfo_leavesTheRestOfAnAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("left");
    QTest::newRow("none") << text("http://h/p?a=b#c") << text("http://h/p?a=b#c");
    QTest::newRow("user") << text("http://u@h/") << text("http://h/");
    QTest::newRow("user and password") << text("ftp://u:p@h:8080/x") << text("ftp://h:8080/x");
    QTest::newRow("more than one @") << text("http://u:p@q@h/") << text("http://h/");
    QTest::newRow("@ in the path") << text("http://h/a@b") << text("http://h/a@b");
    QTest::newRow("@ in the query") << text("http://h?a@b") << text("http://h?a@b");
    QTest::newRow("@ in the fragment") << text("http://h#a@b") << text("http://h#a@b");
    QTest::newRow("address in an address")
        << text("http://h/?u=http://u:p@i/") << text("http://h/?u=http://i/");
    QTest::newRow("scheme twice") << text("http://http://u:p@h/") << text("http://http://h/");
    QTest::newRow("scheme in a scheme") << text("http:x://u:p@h/") << text("http:x://h/");
    QTest::newRow("many schemes") << text("http:").repeated(100000) + text("/@")
                                  << text("http:").repeated(100000) + text("/@");
    QTest::newRow("no valid address") << text("http://u:p w%@h:x/") << text("http://h:x/");
    QTest::newRow("no end") << text("https://u:p@") << text("https://");
    QTest::newRow("no slashes") << text("HTTP:u:p@h/") << text("HTTP:h/");
    QTest::newRow("backslashes") << text("http:\\\\u:p@h/") << text("http:\\\\h/");
    QTest::newRow("no scheme") << text("//u:p@h/") << text("//h/");
    QTest::newRow("mail") << text("mailto:a@b.example") << text("mailto:a@b.example");
    QTest::newRow("plain text") << text("a@b: c") << text("a@b: c");
    QTest::newRow("nothing") << QString() << QString();
}

void tst_Text::withoutUserInfo_leavesTheRestOfAnAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, left);
    QCOMPARE(withoutUserInfo(address), left);
}

QTEST_GUILESS_MAIN(tst_Text)
#include "tst_Text.moc"
