// velmora-profile history, and times where clocks change.

#include "tests/tools/Tool.h"

namespace
{
// The tool lives where clocks are put forward at 02:00 on 2026/03/29.
class ClockChange
{
public:
    ClockChange() : m_before(qgetenv("TZ")) { qputenv("TZ", "Europe/Berlin"); }
    ~ClockChange()
    {
        if (m_before.isNull()) {
            qunsetenv("TZ");
        } else {
            qputenv("TZ", m_before);
        }
    }
    ClockChange(const ClockChange &) = delete;
    ClockChange &operator=(const ClockChange &) = delete;

private:
    QByteArray m_before;
};

QByteArray visit(const char *url, const char *time)
{
    return QByteArray("<pageInfo><title/><url>") + url + "</url><dateTime>" + time
           + "</dateTime></pageInfo>";
}
} // namespace

class tst_history : public QObject
{
    Q_OBJECT

private slots:
    void history_isListedAndFound();
    void history_isAddedInOrder();
    void history_warnsOfDatesThatDoNotParse();
    void history_isRemovedAndCleared();
    void history_removesWhatItListsWhereClocksChange();
    void times_inTheGapAreKept();
    void history_dropsTheOldestAt999();
};

void tst_history::history_isListedAndFound()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray head = "Id  Visited           Title   URL\n";
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                head
                    + "0   2026/01/02 10:30  Second  http://b.example/\n"
                      "1   2026/01/01 09:05  First   http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history find % http://a.example/"), 0,
                "Id  Visited           Title  URL\n"
                "1   2026/01/01 09:05  First  http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history find % http://A.example/"), 1, "", "");
    QCOMPARE(jsonOf(runTool(directory, "history list % --json")).array().size(), 2);
}

void tst_history::history_isAddedInOrder()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://c/"),
                         utf8("Between"), utf8("--time"), utf8("2026/01/01 23:59")}),
                0, "", "");
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                "Id  Visited           Title    URL\n"
                "0   2026/01/02 10:30  Second   http://b.example/\n"
                "1   2026/01/01 23:59  Between  http://c/\n"
                "2   2026/01/01 09:05  First    http://a.example/\n",
                "");
}

void tst_history::history_warnsOfDatesThatDoNotParse()
{
    const TestDirectory directory;
    const QByteArray document = "<history><pageInfo><title>T</title><url>http://old/</url>"
                                "<dateTime>2026/1/2 3:4</dateTime></pageInfo></history>";
    writeFile(directory.file("visit.xml"), document);
    const QByteArray lost = "velmora-profile: lost: http://old/: its date '2026/1/2 3:4' does not "
                            "parse and is written empty\n";
    COMPARE_RUN(runTool(directory, "history add % http://x/ --strict"), 2, "",
                lost + "velmora-profile: 1 loss, and --strict is set; nothing was changed\n");
    COMPARE_BYTES(readFile(directory.file("visit.xml")), document);
    COMPARE_RUN(runTool(directory, "history add % http://x/"), 0, "", lost);
    QVERIFY(readFile(directory.file("visit.xml")).contains("<dateTime/>"));
}

void tst_history::history_isRemovedAndCleared()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "history remove % 0"), 0, "", "");
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                "Id  Visited           Title  URL\n"
                "0   2026/01/01 09:05  First  http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history clear %"), 0, "", "");
    COMPARE_BYTES(readFile(directory.file("visit.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<history docInfo=\"1.0\"/>\n");
}

// The 02:30 does not exist where clocks are put forward at 02:00; it stands for 03:30.
void tst_history::history_removesWhatItListsWhereClocksChange()
{
    const ClockChange clockChange;
    const QByteArray head = "Id  Visited           Title  URL\n";
    const QByteArray lines[] = {
        "2026/03/29 03:30         http://0/\n", "2026/03/29 02:30         http://1/\n",
        "2026/03/29 01:30         http://2/\n", "2026/03/28 01:30         http://3/\n"};
    for (int removed = 0; removed < 4; ++removed) {
        const TestDirectory directory;
        writeFile(directory.file("visit.xml"), "<history>" + visit("http://0/", "2026/03/29 03:30")
                                                   + visit("http://1/", "2026/03/29 02:30")
                                                   + visit("http://2/", "2026/03/29 01:30")
                                                   + visit("http://3/", "2026/03/28 01:30")
                                                   + "</history>");
        QByteArray before = head;
        QByteArray behind = head;
        int id = 0;
        for (int i = 0; i < 4; ++i) {
            before += QByteArray::number(i) + "   " + lines[i];
            behind += i == removed ? QByteArray() : QByteArray::number(id++) + "   " + lines[i];
        }
        COMPARE_RUN(runTool(directory, "history list %"), 0, before, "");
        COMPARE_RUN(
            runTool({utf8("history"), utf8("remove"), directory.path(), QString::number(removed)}),
            0, "", "");
        COMPARE_RUN(runTool(directory, "history list %"), 0, behind, "");
    }
}

// Nothing is lost, so there is no word of it.
void tst_history::times_inTheGapAreKept()
{
    const ClockChange clockChange;
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://a/"),
                         utf8("--time"), utf8("2026/03/29 02:30")}),
                0, "", "");
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://b/"),
                         utf8("--strict"), utf8("--time"), utf8("2026/03/30 12:00")}),
                0, "", "");
    QVERIFY(readFile(directory.file("visit.xml")).contains("2026/03/29 02:30"));
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
    const QByteArray page = runTool(directory, "report % -o -").output;
    QVERIFY(page.contains("2026-03-29: 1 visit"));
    writeFile(
        directory.file("cookie.xml"),
        "<cookie><webSiteInfo id=\"000\"><website>http://w.example/</website><name>n</name>"
        "<contents>v</contents><expires>2026/03/29 02:30:00</expires></webSiteInfo></cookie>");
    COMPARE_RUN(runTool(directory, "cookies to-ini % --strict"), 0, "", "");
}

void tst_history::history_dropsTheOldestAt999()
{
    const TestDirectory directory;
    writeFile(directory.file("visit.xml"), fullHistory());
    COMPARE_RUN(runTool(directory, "history add % http://new/"), 0, "",
                "velmora-profile: lost: http://998/: the oldest of 999 makes room\n");
    QCOMPARE(jsonOf(runTool(directory, "history list % --json")).array().size(), 999);
    QCOMPARE(runTool(directory, "history find % http://new/").status, 0);
    QCOMPARE(runTool(directory, "history find % http://998/").status, 1);
}

QTEST_GUILESS_MAIN(tst_history)
#include "tst_history.moc"
