#include "core/QEXC_TextCodec.h"

#include "tests/support/Files.h"

class tst_QEXC_TextCodec : public QObject
{
    Q_OBJECT

private slots:
    void fromSJIS_keepsEveryAsciiByte();
    void fromSJIS_givesEmptyTextForNothing();
    void fromSJIS_readsShiftJis_data();
    void fromSJIS_readsShiftJis();
    void fromSJIS_endsAtTheZero();
    void fromSJIS_keepsNoStateBetweenCalls();
};

void tst_QEXC_TextCodec::fromSJIS_keepsEveryAsciiByte()
{
    for (int byte = 1; byte < 128; ++byte) {
        const char text[] = {'a', char(byte), 'z', '\0'};
        QCOMPARE(QEXC_TextCodec::fromSJIS(text), QString::fromLatin1(text));
    }
}

void tst_QEXC_TextCodec::fromSJIS_givesEmptyTextForNothing()
{
    QVERIFY(QEXC_TextCodec::fromSJIS(nullptr).isEmpty());
    QVERIFY(QEXC_TextCodec::fromSJIS("").isEmpty());
}

void tst_QEXC_TextCodec::fromSJIS_readsShiftJis_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("hiragana") << QByteArray("\x82\xa0\x82\xa2") << utf8("\xe3\x81\x82\xe3\x81\x84");
    QTest::newRow("kanji") << QByteArray("\x93\xfa\x96\x7b\x8c\xea")
                           << utf8("\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e");
    QTest::newRow("half-width katakana, one byte each")
        << QByteArray("\xb1\xb2") << utf8("\xef\xbd\xb1\xef\xbd\xb2");
    QTest::newRow("a second byte that is a backslash")
        << QByteArray("\x95\x5c.xml") << utf8("\xe8\xa1\xa8.xml");
    QTest::newRow("the first byte that is not ASCII, no character")
        << QByteArray("a\x80z") << utf8("a\xef\xbf\xbdz");
    QTest::newRow("mixed") << QByteArray("A\x82\xa0"
                                         "B")
                           << utf8("A\xe3\x81\x82"
                                   "B");
}

void tst_QEXC_TextCodec::fromSJIS_readsShiftJis()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(QEXC_TextCodec::fromSJIS(bytes.constData()), text);
}

void tst_QEXC_TextCodec::fromSJIS_endsAtTheZero()
{
    QCOMPARE(QEXC_TextCodec::fromSJIS("ab\0cd"), utf8("ab"));
    QCOMPARE(QEXC_TextCodec::fromSJIS("\x82\xa0\0\x82\xa0"), utf8("\xe3\x81\x82"));
}

void tst_QEXC_TextCodec::fromSJIS_keepsNoStateBetweenCalls()
{
    QEXC_TextCodec::fromSJIS("\x82");
    QCOMPARE(QEXC_TextCodec::fromSJIS("\xb1\x82\xa0"), utf8("\xef\xbd\xb1\xe3\x81\x82"));
}

QTEST_GUILESS_MAIN(tst_QEXC_TextCodec)
#include "tst_QEXC_TextCodec.moc"
