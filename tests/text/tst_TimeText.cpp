#include "text/TimeText_p.h"

#include "tests/support/Files.h"

#include <ctime>

using namespace vlm;

// Everything here is in a zone that changes to daylight saving and back.
class tst_TimeText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void timeOfText_readsWhatMatches_data();
    void timeOfText_readsWhatMatches();
    void timeOfText_refusesTheRest_data();
    void timeOfText_refusesTheRest();
    void timeOfText_givesLocalTime();
    void timeOfText_keepsOrderOverTheGap();
    void timeOfText_keepsOrderOverTheOverlap();
    void textOfTime_dropsWhatTheFormLacks();
    void textOfTime_isEmptyForInvalidTimes();
};

void tst_TimeText::initTestCase()
{
    qputenv("TZ", "Europe/Berlin");
    tzset();
}

void tst_TimeText::timeOfText_readsWhatMatches_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("toSecond");
    QTest::newRow("to the minute") << utf8("2026/01/02 03:04") << false;
    QTest::newRow("to the second") << utf8("2026/01/02 03:04:05") << true;
    QTest::newRow("midnight") << utf8("2026/01/01 00:00") << false;
    QTest::newRow("last minute") << utf8("2026/12/31 23:59") << false;
    QTest::newRow("last second") << utf8("2026/12/31 23:59:59") << true;
    QTest::newRow("29 February, leap year") << utf8("2028/02/29 12:00") << false;
    QTest::newRow("29 February 2000") << utf8("2000/02/29 12:00") << false;
    QTest::newRow("year 0999") << utf8("0999/12/31 23:59") << false;
    QTest::newRow("year 9999") << utf8("9999/12/31 23:59") << false;
    QTest::newRow("year 9999, seconds") << utf8("9999/12/31 23:59:59") << true;
    QTest::newRow("before the epoch") << utf8("1969/12/31 23:59") << false;
    QTest::newRow("before the gap") << utf8("2026/03/29 01:59") << false;
    QTest::newRow("first of the gap") << utf8("2026/03/29 02:00") << false;
    QTest::newRow("in the gap") << utf8("2026/03/29 02:30") << false;
    QTest::newRow("in the gap, seconds") << utf8("2026/03/29 02:30:31") << true;
    QTest::newRow("last of the gap") << utf8("2026/03/29 02:59") << false;
    QTest::newRow("behind the gap") << utf8("2026/03/29 03:00") << false;
    QTest::newRow("in the overlap") << utf8("2026/10/25 02:30") << false;
}

void tst_TimeText::timeOfText_readsWhatMatches()
{
    QFETCH(QString, text);
    QFETCH(bool, toSecond);
    const TimeText form = toSecond ? ToSecond : ToMinute;

    const QDateTime time = timeOfText(text, form);

    QVERIFY(time.isValid());
    QCOMPARE(textOfTime(time, form), text);
}

void tst_TimeText::timeOfText_refusesTheRest_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("toSecond");
    QTest::newRow("null") << QString() << false;
    QTest::newRow("empty") << utf8("") << false;
    QTest::newRow("no time") << utf8("yesterday at noon") << false;
    QTest::newRow("seconds too many") << utf8("2026/01/02 03:04:05") << false;
    QTest::newRow("seconds missing") << utf8("2026/01/02 03:04") << true;
    QTest::newRow("one-digit hour") << utf8("2026/01/02 3:04") << false;
    QTest::newRow("one-digit hour, seconds") << utf8("2026/01/02 3:04:05") << true;
    QTest::newRow("one-digit minute") << utf8("2026/01/02 03:4") << false;
    QTest::newRow("one-digit second") << utf8("2026/01/02 03:04:5") << true;
    QTest::newRow("one-digit month") << utf8("2026/1/02 03:04") << false;
    QTest::newRow("one-digit day") << utf8("2026/01/2 03:04") << false;
    QTest::newRow("three-digit year") << utf8("999/12/31 23:59") << false;
    QTest::newRow("five-digit year") << utf8("12026/01/02 03:04") << false;
    QTest::newRow("year 0000") << utf8("0000/01/02 03:04") << false;
    QTest::newRow("month 00") << utf8("2026/00/02 03:04") << false;
    QTest::newRow("month 13") << utf8("2026/13/02 03:04") << false;
    QTest::newRow("day 00") << utf8("2026/01/00 03:04") << false;
    QTest::newRow("day 32") << utf8("2026/01/32 03:04") << false;
    QTest::newRow("31 April") << utf8("2026/04/31 03:04") << false;
    QTest::newRow("29 February, other year") << utf8("2026/02/29 12:00") << false;
    QTest::newRow("29 February 1900") << utf8("1900/02/29 12:00") << false;
    QTest::newRow("24:00") << utf8("2026/01/02 24:00") << false;
    QTest::newRow("23:60") << utf8("2026/01/02 23:60") << false;
    QTest::newRow("23:59:60") << utf8("2026/01/02 23:59:60") << true;
    QTest::newRow("leading blank") << utf8(" 2026/01/02 03:04") << false;
    QTest::newRow("trailing blank") << utf8("2026/01/02 03:04 ") << false;
    QTest::newRow("blank for a digit") << utf8("2026/01/ 2 03:04") << false;
    QTest::newRow("sign for a digit") << utf8("+026/01/02 03:04") << false;
    QTest::newRow("hyphens") << utf8("2026-01-02 03:04") << false;
    QTest::newRow("T for the blank") << utf8("2026/01/02T03:04") << false;
    QTest::newRow("dot for the colon") << utf8("2026/01/02 03.04") << false;
    QTest::newRow("character before 0") << utf8("2026/01/02 03:1/") << false;
    QTest::newRow("character behind 9") << utf8("2026/01/02 03:0:") << false;
    QTest::newRow("full-width digit") << utf8("2026/01/02 03:0\xef\xbc\x94") << false;
    QTest::newRow("full-width year")
        << utf8("\xef\xbc\x92\xef\xbc\x90\xef\xbc\x92\xef\xbc\x96/01/02 03:04") << false;
}

void tst_TimeText::timeOfText_refusesTheRest()
{
    QFETCH(QString, text);
    QFETCH(bool, toSecond);
    QVERIFY(!timeOfText(text, toSecond ? ToSecond : ToMinute).isValid());
}

void tst_TimeText::timeOfText_givesLocalTime()
{
    QCOMPARE(timeOfText(utf8("2026/01/02 03:04:05"), ToSecond),
             QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    QCOMPARE(timeOfText(utf8("2026/07/02 03:04"), ToMinute).toUTC(),
             QDateTime(QDate(2026, 7, 2), QTime(1, 4), Qt::UTC));
}

// The clock goes from 01:59 to 03:00; with the offset of before, 02:30 is 30 minutes later.
void tst_TimeText::timeOfText_keepsOrderOverTheGap()
{
    const QDateTime before = timeOfText(utf8("2026/03/29 01:59"), ToMinute);
    const QDateTime skipped = timeOfText(utf8("2026/03/29 02:30"), ToMinute);
    const QDateTime after = timeOfText(utf8("2026/03/29 03:31"), ToMinute);
    QVERIFY(before < skipped);
    QVERIFY(skipped < after);
    QCOMPARE(skipped.toUTC(), QDateTime(QDate(2026, 3, 29), QTime(1, 30), Qt::UTC));
}

void tst_TimeText::timeOfText_keepsOrderOverTheOverlap()
{
    const QDateTime before = timeOfText(utf8("2026/10/25 01:59"), ToMinute);
    const QDateTime twice = timeOfText(utf8("2026/10/25 02:30"), ToMinute);
    const QDateTime after = timeOfText(utf8("2026/10/25 03:00"), ToMinute);
    QVERIFY(before < twice);
    QVERIFY(twice < after);
}

void tst_TimeText::textOfTime_dropsWhatTheFormLacks()
{
    const QDateTime time(QDate(2026, 1, 2), QTime(3, 4, 59, 999));
    QCOMPARE(textOfTime(time, ToMinute), utf8("2026/01/02 03:04"));
    QCOMPARE(textOfTime(time, ToSecond), utf8("2026/01/02 03:04:59"));
}

void tst_TimeText::textOfTime_isEmptyForInvalidTimes()
{
    QCOMPARE(textOfTime(QDateTime(), ToMinute), QString());
    QCOMPARE(textOfTime(QDateTime(), ToSecond), QString());
    QCOMPARE(textOfTime(QDateTime(QDate(2026, 2, 30), QTime(1, 2)), ToMinute), QString());
}

QTEST_GUILESS_MAIN(tst_TimeText)
#include "tst_TimeText.moc"
