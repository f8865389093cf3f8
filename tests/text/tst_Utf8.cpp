#include "text/Utf8_p.h"

#include "tests/support/Files.h"

using namespace vlm;

class tst_Utf8 : public QObject
{
    Q_OBJECT

private slots:
    void fitsUtf8_countsBytes_data();
    void fitsUtf8_countsBytes();
    void clipped_atEveryLimit_data();
    void clipped_atEveryLimit();
    void clipped_cutCharacters_data();
    void clipped_cutCharacters();
};

void tst_Utf8::fitsUtf8_countsBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bytes");
    QTest::newRow("empty") << QString() << 0;
    for (int count = 1; count <= 10; ++count) {
        const QByteArray times = QByteArray::number(count);
        QTest::newRow((times + " of 1").constData()) << utf8("a").repeated(count) << count;
        QTest::newRow((times + " of 2").constData())
            << utf8("\xc3\xa4").repeated(count) << 2 * count;
        QTest::newRow((times + " of 3").constData())
            << utf8("\xe3\x81\x82").repeated(count) << 3 * count;
        QTest::newRow((times + " of 4").constData())
            << utf8("\xf0\x9f\x98\x80").repeated(count) << 4 * count;
    }
    QTest::newRow("zero character") << QString(3, QChar(0)) << 3;
}

void tst_Utf8::fitsUtf8_countsBytes()
{
    QFETCH(QString, text);
    QFETCH(int, bytes);
    for (int limit = 0; limit < 45; ++limit) {
        QCOMPARE(fitsUtf8(text, limit), bytes <= limit);
    }
}

void tst_Utf8::clipped_atEveryLimit_data()
{
    QTest::addColumn<QString>("character");
    QTest::newRow("1 byte") << utf8("a");
    QTest::newRow("2 bytes") << utf8("\xc3\xa4");
    QTest::newRow("3 bytes") << utf8("\xe3\x81\x82");
    QTest::newRow("4 bytes") << utf8("\xf0\x9f\x98\x80");
}

// Whole characters stay; after them come only replacement characters, as many as fit.
void tst_Utf8::clipped_atEveryLimit()
{
    QFETCH(QString, character);
    const int bytes = int(character.toUtf8().size());
    for (int limit = 1; limit <= 10; ++limit) {
        const QString kept = clipped(character.repeated(12), limit);
        const QString whole = character.repeated(limit / bytes);
        QVERIFY(kept.toUtf8().size() <= limit);
        QVERIFY(kept.startsWith(whole));
        const QString rest = kept.mid(whole.size());
        QCOMPARE(rest, QString(rest.size(), QChar(QChar::ReplacementCharacter)));
        QCOMPARE(clipped(whole, limit), whole);
    }
}

void tst_Utf8::clipped_cutCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("kept");
    const QString wide = utf8("\xe3\x81\x82");
    const QString face = utf8("\xf0\x9f\x98\x80");
    const QString mark(QChar(QChar::ReplacementCharacter));
    QTest::newRow("no room for a mark") << wide + wide << 5 << wide;
    QTest::newRow("2 of 3 bytes") << wide << 2 << QString();
    QTest::newRow("3 of 4 bytes") << face << 3 << mark;
    QTest::newRow("2 of 4 bytes") << face << 2 << QString();
    QTest::newRow("3 of 4 bytes, behind a") << utf8("a") + face << 4 << utf8("a") + mark;
    QTest::newRow("whole pair") << face << 4 << face;
    const QString zeros = utf8("ab") + QChar(0) + utf8("cd");
    QTest::newRow("ends at the zero character") << zeros << 10 << utf8("ab");
    QTest::newRow("cut behind it") << zeros << 3 << utf8("ab");
    QTest::newRow("cut before it") << zeros << 1 << utf8("a");
    QTest::newRow("limit 0 keeps all") << zeros + wide << 0 << zeros + wide;
    QTest::newRow("limit -1 keeps all") << zeros + wide << -1 << zeros + wide;
}

void tst_Utf8::clipped_cutCharacters()
{
    QFETCH(QString, text);
    QFETCH(int, limit);
    QFETCH(QString, kept);
    QCOMPARE(clipped(text, limit).toUtf8(), kept.toUtf8());
}

QTEST_GUILESS_MAIN(tst_Utf8)
#include "tst_Utf8.moc"
