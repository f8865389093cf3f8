#include "bookmarks/VLMC_HistorySetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LivingObjects.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/WatchedStore.h"

namespace
{
const char kHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const char kFile[] = "visit.xml";
const char kGetLine[] = "3 [VLMC_HistorySetting::getHistory]\n";
const char kSetLine[] = "3 [VLMC_HistorySetting::setHistory]\n";
const char kDay[] = "2026/01/01 00:00";

VLMS_History visit(const char *title, const char *url, const char *time)
{
    VLMS_History entry;
    entry.title = utf8(title);
    entry.url = utf8(url);
    entry.dateTime = QDateTime::fromString(utf8(time), utf8("yyyy/MM/dd hh:mm:ss"));
    return entry;
}

// A visit in a file; the URL follows from the title.
QByteArray entryOf(const QByteArray &title, const QByteArray &time)
{
    return "<pageInfo><title>" + title + "</title><url>u:" + title + "</url><dateTime>" + time
           + "</dateTime></pageInfo>";
}

QByteArray fileOf(const QByteArray &entries) { return "<history>" + entries + "</history>"; }

// As the writer lays a visit out.
QByteArray written(const QByteArray &id, const QByteArray &title, const QByteArray &url,
                   const QByteArray &time)
{
    const QByteArray timeElement =
        time.isEmpty() ? QByteArray("<dateTime/>") : "<dateTime>" + time + "</dateTime>";
    return "    <pageInfo id=\"" + id + "\">\n        <title>" + title + "</title>\n        <url>"
           + url + "</url>\n        " + timeElement + "\n    </pageInfo>\n";
}

QByteArray writtenFile(const QByteArray &entries)
{
    return kHead + ("<history docInfo=\"1.0\">\n" + entries) + "</history>\n";
}

// Visits of these titles of one letter, the newest first, a day apart.
QByteArray daysOf(const QByteArray &titles)
{
    QByteArray entries;
    for (int i = 0; i < titles.size(); ++i) {
        entries += entryOf(titles.mid(i, 1), "2026/01/0" + QByteArray::number(9 - i) + " 00:00");
    }
    return entries;
}

// Has the store, which is of the library's own class or of another, load a file; the log then
// starts anew.
void loadFile(VLMC_HistorySetting &history, const QByteArray &content, int max = 100)
{
    TestDirectory directory;
    writeFile(directory.file(kFile), content);
    history.loadHistory(directory.pathPointer(), max);
    takeLog();
}

void load(VLMC_HistorySetting &history, const QByteArray &entries = QByteArray(), int max = 100)
{
    loadFile(history, fileOf(entries), max);
}

QByteArray saved(VLMC_HistorySetting &history)
{
    TestDirectory directory;
    history.saveHistory(directory.pathPointer(), 1);
    return readFile(directory.file(kFile));
}

// The titles in document order, a comma behind each.
QByteArray titles(VLMC_HistorySetting &history)
{
    QByteArray all;
    QString name = utf8("title");
    const QList<VLMC_XMLNode *> children = history.getXMLRootNode()->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        all += child->getXMLNodeChildByName(name)->getText().toUtf8() + ',';
    }
    return all;
}

QByteArray ids(VLMC_HistorySetting &history)
{
    QByteArray all;
    const QList<VLMC_XMLNode *> children = history.getXMLRootNode()->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        all += child->getAttribute().value(utf8("id")).toString().toUtf8() + ',';
    }
    return all;
}

int indexOf(VLMC_HistorySetting &history, const char *url)
{
    QString text = utf8(url);
    return history.getHistoryIndex(text);
}

class UnnumberedHistory : public VLMC_HistorySetting
{
public:
    void setIDforChildren(QString &) override {}
};

VLMC_XMLNode *addRaw(VLMC_XMLNode *parent, const char *name, const char *text, const char *id)
{
    VLMC_XMLNode *const node = new VLMC_XMLNode(parent, 0);
    QString nodeName = utf8(name);
    QString nodeText = utf8(text);
    node->setName(nodeName);
    node->setText(nodeText);
    QXmlStreamAttributes attributes;
    if (id) {
        attributes.append(utf8("id"), utf8(id));
    }
    node->setAttribute(attributes);
    return node;
}

// As an id is written.
QByteArray threeDigits(int number) { return QByteArray::number(number).rightJustified(3, '0'); }

// The calls that add a visit.
QByteArray additionOf(const QByteArray &root, const QByteArray &title, const QByteArray &url,
                      const QByteArray &time)
{
    const QByteArray field = "addXMLChild pageInfo ";
    QByteArray calls = "addXMLChild " + root + " pageInfo '' 0 0 1\n";
    calls += field + "title '" + title + "' 0 0 0\n";
    calls += field + "url '" + url + "' 0 0 0\n";
    calls += field + "dateTime '" + time + "' 0 0 0\n";
    return calls + "setIDforChildren id\n";
}

// Takes no node, and counts more entries than there are.
class OddHistory : public VLMC_HistorySetting
{
public:
    int getXMLRootNodeChildCntByName(QString &, QString &) override { return 3; }
    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *, QString &, QString &, char &, QXmlStreamAttributes &,
                              char) override
    {
        return nullptr;
    }
    void setIDforChildren(QString &) override { ++numberings; }
    int numberings = 0;
};
} // namespace

class tst_VLMC_HistorySetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void stores_shareNothing();

    void loadHistory_logsEveryStep();
    void loadHistory_drops501Of1500();
    void loadHistory_keepsDistinctIdsBehindTheLastNumber();
    void loadHistory_releasesWhatItReplaces_data();
    void loadHistory_releasesWhatItReplaces();

    void saveHistory_writesByteForByte();

    void getHistory_fillsTheRecord();
    void getHistory_missesLeaveTheRecord();
    void getHistory_keepsFieldsThatAreMissing();
    void getHistory_givesInvalidTimes_data();
    void getHistory_givesInvalidTimes();

    void getHistoryIndex_findsEachOfMany();
    void getHistoryIndex_logsOneLineAnEntry_data();
    void getHistoryIndex_logsOneLineAnEntry();
    void getHistoryIndex_reusesTheRecord();
    void getHistoryIndex_endsEarlyWithForeignEntries();
    void getHistoryIndex_passesIdsOfNoEntry();

    void setHistory_insertsAtTheFront();
    void setHistory_ignoresNull();
    void setHistory_keepsNothingBeforeLoad();
    void setHistory_stopsWithoutANode();
    void setHistory_keepsAnyLength();
    void setHistory_leavesIdsBehindTheLastNumber();

    void updateHistory_keepsTheLimit_data();
    void updateHistory_keepsTheLimit();
    void updateHistory_deletesForNullToo();
    void updateHistory_asksForMinusOneBeforeLoad();
    void updateHistory_keepsMaxOfRefusedLoad();

    void changeHistory_changesInPlace();
    void changeHistory_createsNothing();

    void deleteHistory_renumbers();
    void deleteHistory_ignoresUnknownIds();

    void sortHistory_isStable();
    void sortHistory_putsInvalidTimesLast();
    void sortHistory_stopsBeforeLoad();
    void sortHistory_keepsEmptyHistoryEmpty();
    void sortHistory_rebuildsEveryEntry();
    void sortHistory_readsByIdOnce();
    void sortHistory_keepsTheRoot();
    void sortHistory_logsNullChildrenEveryTime();
    void sortHistory_leavesThoseBehindTheNumberedTheLastId_data();
    void sortHistory_leavesThoseBehindTheNumberedTheLastId();
    void sortHistory_leavesNumberingToAnOverride();
    void sortHistory_callsVirtualOperations();

    void operatorLess_putsTheLaterFirst();
    void ClipString_countsBytes_data();
    void ClipString_countsBytes();
};

void tst_VLMC_HistorySetting::stores_shareNothing()
{
    VLMC_HistorySetting one;
    load(one, daysOf("a"), 1);
    VLMC_HistorySetting other;
    load(other, daysOf("b"), 5);
    VLMS_History entry = visit("c", "u:c", "2026/02/01 00:00:00");
    one.updateHistory(&entry);
    other.updateHistory(&entry);
    COMPARE_BYTES(titles(one), "c,");
    COMPARE_BYTES(titles(other), "c,b,");
}

// A derived class gets the same by its virtual operations.
void tst_VLMC_HistorySetting::loadHistory_logsEveryStep()
{
    TestDirectory directory;
    writeFile(directory.file(kFile), fileOf(entryOf("b", kDay) + daysOf("a")));
    VLMC_HistorySetting history;
    WatchedStore<VLMC_HistorySetting> derived;
    VLMC_HistorySetting *const stores[] = {&history, &derived};
    for (VLMC_HistorySetting *const store : stores) {
        store->loadHistory(directory.pathPointer(), 1);
        COMPARE_BYTES(titles(*store), "a,b,");
        COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::loadHistory] start\n"
                                    "3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n"
                                    "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                    "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                    "3 [VLMC_HistorySetting::sortHistory]\n"
                                        + QByteArray(kGetLine).repeated(2)
                                        + "3 [VLMC_XMLSetting::deleteRootChildren] "
                                        + hexAddress(store->getXMLRootNode()) + '\n'
                                        + QByteArray(kSetLine).repeated(2)
                                        + "3 [VLMC_HistorySetting::loadHistory] end\n");
    }
    COMPARE_BYTES(derived.takeCalls(), "deleteAllSetting\nload " + directory.file(kFile).toUtf8()
                                           + "\nsetIDforChildren id\ndeleteAllSetting\n"
                                           + additionOf("history", "b", "u:b", kDay)
                                           + additionOf("history", "a", "u:a", "2026/01/09 00:00")
                                           + "setIDforChildren id\n");
}

// Entries without a number are not read before the sort deletes them.
void tst_VLMC_HistorySetting::loadHistory_drops501Of1500()
{
    TestDirectory directory;
    QByteArray entries;
    QByteArray expected;
    for (int i = 0; i < 1500; ++i) {
        entries += entryOf("t" + QByteArray::number(i), kDay);
    }
    for (int i = 0; i < 999; ++i) {
        const QByteArray title = "t" + QByteArray::number(i);
        expected += written(threeDigits(i), title, "u:" + title, kDay);
    }
    writeFile(directory.file(kFile), fileOf(entries));
    VLMC_HistorySetting history;

    history.loadHistory(directory.pathPointer(), 10);

    const QByteArray log = loggedText();
    QCOMPARE(log.count(kGetLine), 1500);
    QCOMPARE(log.count(kSetLine), 999);
    QCOMPARE(history.getHistoryCnt(), 999);
    history.saveHistory(directory.pathPointer(), 1);
    COMPARE_BYTES(readFile(directory.file(kFile)), writtenFile(expected));
}

void tst_VLMC_HistorySetting::loadHistory_keepsDistinctIdsBehindTheLastNumber()
{
    QByteArray entries;
    for (int i = 0; i < 1002; ++i) {
        const QByteArray id = QByteArray::number(i == 1001 ? 998 : i);
        entries += entryOf("t" + QByteArray::number(i), kDay)
                       .replace("<pageInfo>", "<pageInfo id=\"" + id + "\">");
    }
    VLMC_HistorySetting history;
    load(history, entries);
    WatchedStore<VLMC_HistorySetting> derived;
    load(derived, entries);

    QCOMPARE(history.getXMLNodeCnt(), 1001);
    QVERIFY(titles(history).endsWith(",t998,t999,t1000,"));
    QVERIFY(ids(history).endsWith(",997,998,998,998,"));
    COMPARE_BYTES(ids(history), ids(derived));
    COMPARE_BYTES(titles(history), titles(derived));
}

void tst_VLMC_HistorySetting::loadHistory_releasesWhatItReplaces_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray plain = entryOf("t", kDay);
    QTest::newRow("entries in use") << fileOf(plain.repeated(900));
    QTest::newRow("entries left out") << fileOf(plain.repeated(1900));
    QTest::newRow("entries built anew")
        << fileOf(("<pageInfo>text" + plain.mid(int(qstrlen("<pageInfo>")))).repeated(900));
}

void tst_VLMC_HistorySetting::loadHistory_releasesWhatItReplaces()
{
    QFETCH(QByteArray, file);
    VLMC_HistorySetting history;
    loadFile(history, file);
    runDeferredDeletes();
    const int before = livingObjects();
    loadFile(history, file);
    runDeferredDeletes();
    // Qt and the test keep a few.
    const int more = livingObjects() - before;
    QVERIFY2(more < 900, QByteArray::number(more).constData());
}

void tst_VLMC_HistorySetting::saveHistory_writesByteForByte()
{
    VLMC_HistorySetting history;
    load(history);
    VLMS_History older = visit("A < B & \"C\"", "http://a/?x=1&y=2", "2026/01/02 03:04:59");
    VLMS_History newer =
        visit("\xf0\x9f\x98\x80 \xe3\x81\x82", "http://b/\xc3\xa9", "2026/11/12 13:14:00");
    VLMS_History timeless = visit("b", "u:b", "");
    for (VLMS_History *const entry : {&older, &newer, &timeless}) {
        history.setHistory(entry);
    }
    COMPARE_BYTES(saved(history),
                  writtenFile(written("000", "b", "u:b", "")
                              + written("001", "\xf0\x9f\x98\x80 \xe3\x81\x82", "http://b/\xc3\xa9",
                                        "2026/11/12 13:14")
                              + written("002", "A &lt; B &amp; &quot;C&quot;",
                                        "http://a/?x=1&amp;y=2", "2026/01/02 03:04")));
}

void tst_VLMC_HistorySetting::getHistory_fillsTheRecord()
{
    VLMC_HistorySetting history;
    load(history, entryOf("a", "2026/01/02 03:04") + entryOf("b", kDay));
    VLMS_History read;
    QVERIFY(history.getHistory(0, &read));
    COMPARE_BYTES(loggedText(), kGetLine);
    QCOMPARE(read.title, utf8("a"));
    QCOMPARE(read.url, utf8("u:a"));
    QCOMPARE(read.dateTime, QDateTime(QDate(2026, 1, 2), QTime(3, 4)));
    QVERIFY(history.getHistory(1, &read));
    QCOMPARE(read.title, utf8("b"));
}

void tst_VLMC_HistorySetting::getHistory_missesLeaveTheRecord()
{
    VLMC_HistorySetting unloaded;
    VLMC_HistorySetting history;
    load(history, daysOf("a"));
    const VLMS_History before = visit("t", "u", "2026/01/02 03:04:05");
    VLMS_History read = before;
    QVERIFY(!unloaded.getHistory(0, &read));
    QVERIFY(!history.getHistory(-1, &read));
    QVERIFY(!history.getHistory(1, &read));
    QVERIFY(!history.getHistory(0, nullptr));
    COMPARE_BYTES(loggedText(), QByteArray(kGetLine).repeated(4));
    QCOMPARE(read.title, before.title);
    QCOMPARE(read.url, before.url);
    QCOMPARE(read.dateTime, before.dateTime);
}

void tst_VLMC_HistorySetting::getHistory_keepsFieldsThatAreMissing()
{
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    addRaw(root, "pageInfo", "", "000");
    addRaw(addRaw(root, "any", "", "001"), "url", "", nullptr);
    const VLMS_History before = visit("t", "u", "2026/01/02 03:04:05");
    VLMS_History read = before;

    QVERIFY(history.getHistory(0, &read));
    QCOMPARE(read.title, before.title);
    QCOMPARE(read.url, before.url);
    QCOMPARE(read.dateTime, before.dateTime);

    QVERIFY(history.getHistory(1, &read));
    QCOMPARE(read.title, before.title);
    QCOMPARE(read.url, utf8(""));
}

void tst_VLMC_HistorySetting::getHistory_givesInvalidTimes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("padded") << utf8("2026/01/02 03:04") << true;
    QTest::newRow("month not padded") << utf8("2026/1/02 03:04") << false;
    QTest::newRow("day not padded") << utf8("2026/01/2 03:04") << false;
    QTest::newRow("hour not padded") << utf8("2026/01/02 3:04") << false;
    QTest::newRow("with seconds") << utf8("2026/01/02 03:04:05") << false;
    QTest::newRow("empty") << utf8("") << false;
    QTest::newRow("no time") << utf8("today") << false;
}

void tst_VLMC_HistorySetting::getHistory_givesInvalidTimes()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    VLMC_HistorySetting history;
    VLMC_XMLNode *const entry = addRaw(history.createXMLRootNode(), "pageInfo", "", "000");
    addRaw(entry, "dateTime", text.toUtf8().constData(), nullptr);
    VLMS_History read = visit("t", "u", "2020/01/02 03:04:05");

    QVERIFY(history.getHistory(0, &read));

    QCOMPARE(read.dateTime.isValid(), valid);
}

void tst_VLMC_HistorySetting::getHistoryIndex_findsEachOfMany()
{
    const int many = 200;
    VLMC_HistorySetting history;
    load(history);
    for (int i = many - 1; i >= 0; --i) {
        VLMS_History entry = visit("t", QByteArray::number(i).constData(), "2026/01/01 00:00:00");
        history.setHistory(&entry);
    }
    for (int i = 0; i < many; ++i) {
        takeLog();
        QCOMPARE(indexOf(history, QByteArray::number(i).constData()), i);
        QCOMPARE(loggedText(), QByteArray(kGetLine).repeated(i + 1));
    }
}

void tst_VLMC_HistorySetting::getHistoryIndex_logsOneLineAnEntry_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("linesLogged");
    QTest::newRow("first") << QByteArray("u:a") << 0 << 1;
    QTest::newRow("first of two") << QByteArray("u:b") << 1 << 2;
    QTest::newRow("last") << QByteArray("u:c") << 3 << 4;
    QTest::newRow("none") << QByteArray("none") << -1 << 4;
    QTest::newRow("capital") << QByteArray("U:a") << -1 << 4;
    QTest::newRow("blank behind") << QByteArray("u:a ") << -1 << 4;
    QTest::newRow("beginning") << QByteArray("u:") << -1 << 4;
    QTest::newRow("empty") << QByteArray() << -1 << 4;
}

void tst_VLMC_HistorySetting::getHistoryIndex_logsOneLineAnEntry()
{
    QFETCH(QByteArray, url);
    QFETCH(int, index);
    QFETCH(int, linesLogged);
    WatchedStore<VLMC_HistorySetting> history;
    load(history, daysOf("abbc"));
    history.takeCalls();
    QCOMPARE(indexOf(history, url.constData()), index);
    COMPARE_BYTES(loggedText(), QByteArray(kGetLine).repeated(linesLogged));
    COMPARE_BYTES(history.takeCalls(), "getXMLRootNodeChildCntByName id pageInfo\n");
}

// A match is returned at once, so that an earlier URL can only be met again by an entry without one
// when the earlier entry was no match, which it then is not either. The first is empty.
void tst_VLMC_HistorySetting::getHistoryIndex_reusesTheRecord()
{
    VLMC_HistorySetting history;
    QCOMPARE(indexOf(history, ""), -1);
    QCOMPARE(loggedText(), QByteArray());
    VLMC_XMLNode *const root = history.createXMLRootNode();
    VLMC_XMLNode *const first = addRaw(root, "pageInfo", "", "000");
    QCOMPARE(indexOf(history, ""), 0);
    addRaw(first, "url", "x", nullptr);
    addRaw(root, "pageInfo", "", "001");
    addRaw(addRaw(root, "pageInfo", "", "002"), "url", "", nullptr);
    takeLog();
    QCOMPARE(indexOf(history, "x"), 0);
    QCOMPARE(indexOf(history, ""), 2);
    COMPARE_BYTES(loggedText(), QByteArray(kGetLine).repeated(4));
}

void tst_VLMC_HistorySetting::getHistoryIndex_endsEarlyWithForeignEntries()
{
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    addRaw(addRaw(root, "other", "", "000"), "url", "x", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "001"), "url", "y", nullptr);
    QCOMPARE(indexOf(history, "x"), 0);
    takeLog();
    QCOMPARE(indexOf(history, "y"), -1);
    COMPARE_BYTES(loggedText(), kGetLine);
}

void tst_VLMC_HistorySetting::getHistoryIndex_passesIdsOfNoEntry()
{
    OddHistory history;
    QCOMPARE(indexOf(history, ""), -1);
    COMPARE_BYTES(loggedText(), QByteArray(kGetLine).repeated(3));
    addRaw(addRaw(history.createXMLRootNode(), "pageInfo", "", "000"), "url", "x", nullptr);
    QCOMPARE(indexOf(history, "x"), 0);
    QCOMPARE(indexOf(history, "y"), -1);
}

// Whatever its time: only a load sorts.
void tst_VLMC_HistorySetting::setHistory_insertsAtTheFront()
{
    VLMC_HistorySetting history;
    load(history, daysOf("a"), 1);
    VLMS_History entry = visit("b", "u:b", "2026/01/04 05:06:07");
    history.setHistory(&entry);
    COMPARE_BYTES(loggedText(), kSetLine);
    const QByteArray document = saved(history);
    COMPARE_BYTES(document, writtenFile(written("000", "b", "u:b", "2026/01/04 05:06")
                                        + written("001", "a", "u:a", "2026/01/09 00:00")));
    loadFile(history, document);
    COMPARE_BYTES(titles(history), "a,b,");
}

void tst_VLMC_HistorySetting::setHistory_ignoresNull()
{
    WatchedStore<VLMC_HistorySetting> history;
    history.createXMLRootNode();
    history.setHistory(nullptr);
    COMPARE_BYTES(loggedText(), kSetLine);
    QCOMPARE(history.takeCalls(), QByteArray());
    QCOMPARE(history.getXMLNodeCnt(), 0);
}

void tst_VLMC_HistorySetting::setHistory_keepsNothingBeforeLoad()
{
    WatchedStore<VLMC_HistorySetting> history;
    VLMS_History entry = visit("b", "u:b", "2026/01/04 05:06:07");
    history.setHistory(&entry);
    COMPARE_BYTES(loggedText(), kSetLine);
    COMPARE_BYTES(history.takeCalls(), additionOf("-", "b", "u:b", "2026/01/04 05:06"));
    QVERIFY(!history.getXMLRootNode());
    QCOMPARE(history.getHistoryCnt(), 0);
    QCOMPARE(history.livingNodes(), 4);
    runDeferredDeletes();
    QCOMPARE(history.livingNodes(), 0);
}

void tst_VLMC_HistorySetting::setHistory_stopsWithoutANode()
{
    OddHistory history;
    history.createXMLRootNode();
    VLMS_History entry = visit("b", "u:b", "2026/01/04 05:06:07");
    history.setHistory(&entry);
    COMPARE_BYTES(loggedText(), kSetLine);
    QCOMPARE(history.numberings, 0);
}

void tst_VLMC_HistorySetting::setHistory_keepsAnyLength()
{
    VLMC_HistorySetting history;
    load(history);
    VLMS_History entry = visit("", "", "2026/01/04 05:06:00");
    entry.title = utf8("\xf0\x9f\x98\x80").repeated(5000);
    entry.url = utf8("x").repeated(20000);
    history.setHistory(&entry);
    loadFile(history, saved(history));
    VLMS_History read;
    QVERIFY(history.getHistory(0, &read));
    QCOMPARE(read.title, entry.title);
    QCOMPARE(read.url, entry.url);
}

void tst_VLMC_HistorySetting::setHistory_leavesIdsBehindTheLastNumber()
{
    VLMC_HistorySetting history;
    load(history);
    VLMS_History entry = visit("b", "u:b", "2026/01/04 05:06:00");
    for (int i = 0; i < 1001; ++i) {
        history.setHistory(&entry);
    }
    QCOMPARE(history.getXMLNodeCnt(), 1001);
    QCOMPARE(history.getHistoryCnt(), 999);
    QVERIFY(ids(history).endsWith(",997,998,998,998,"));
}

void tst_VLMC_HistorySetting::updateHistory_keepsTheLimit_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<bool>("deletes");
    QTest::newRow("empty") << 0 << QByteArray("new,") << false;
    QTest::newRow("one below") << 2 << QByteArray("new,t0,t1,") << false;
    QTest::newRow("full") << 3 << QByteArray("new,t0,t1,") << true;
    QTest::newRow("two over") << 5 << QByteArray("new,t0,t1,t3,t4,") << true;
}

void tst_VLMC_HistorySetting::updateHistory_keepsTheLimit()
{
    QFETCH(int, entries);
    QFETCH(QByteArray, after);
    QFETCH(bool, deletes);
    QByteArray content;
    for (int i = 0; i < entries; ++i) {
        content += entryOf("t" + QByteArray::number(i), kDay);
    }
    VLMC_HistorySetting history;
    load(history, content, 3);
    VLMS_History entry = visit("new", "u", "2026/01/04 05:06:07");

    history.updateHistory(&entry);

    COMPARE_BYTES(loggedText(),
                  QByteArray("3 [VLMC_HistorySetting::updateHistory]\n")
                      + (deletes ? "3 [VLMC_HistorySetting::deleteHistory] si_nodeNum:2\n" : "")
                      + kSetLine);
    COMPARE_BYTES(titles(history), after);
    COMPARE_BYTES(ids(history), QByteArray("000,001,002,003,004,").left(4 * after.count(',')));
}

void tst_VLMC_HistorySetting::updateHistory_deletesForNullToo()
{
    VLMC_HistorySetting history;
    load(history, daysOf("a"), 1);
    history.updateHistory(nullptr);
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::updateHistory]\n"
                                "3 [VLMC_HistorySetting::deleteHistory] si_nodeNum:0\n"
                                "3 [VLMC_HistorySetting::setHistory]\n");
    QCOMPARE(history.getXMLNodeCnt(), 0);
}

void tst_VLMC_HistorySetting::updateHistory_asksForMinusOneBeforeLoad()
{
    VLMC_HistorySetting history;
    VLMS_History entry = visit("new", "u", "2026/01/04 05:06:07");
    history.updateHistory(&entry);
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::updateHistory]\n"
                                "3 [VLMC_HistorySetting::deleteHistory] si_nodeNum:-1\n"
                                "3 [VLMC_HistorySetting::setHistory]\n");
    history.createXMLRootNode();
    history.updateHistory(&entry);
    history.updateHistory(&entry);
    QCOMPARE(history.getHistoryCnt(), 2);
}

void tst_VLMC_HistorySetting::updateHistory_keepsMaxOfRefusedLoad()
{
    TestDirectory directory;
    VLMC_HistorySetting history;
    load(history, daysOf("a"), 2);
    history.loadHistory(directory.pathPointer(), 0);
    history.loadHistory(nullptr, 50);
    history.saveHistory(directory.pathPointer(), 60);
    VLMS_History entry = visit("b", "u", "2026/01/04 05:06:07");
    history.updateHistory(&entry);
    COMPARE_BYTES(titles(history), "b,a,");
    history.updateHistory(&entry);
    COMPARE_BYTES(titles(history), "b,b,");
}

void tst_VLMC_HistorySetting::changeHistory_changesInPlace()
{
    WatchedStore<VLMC_HistorySetting> history;
    load(history, daysOf("ab"));
    VLMS_History entry = visit("\xf0\x9f\x98\x80", "v", "2026/12/31 23:59:59");
    QString title = utf8("t");
    history.takeCalls();

    history.changeHistory(1, entry);
    history.changeHistoryTitle(0, title);

    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::changeHistory]\n"
                                "3 [VLMC_HistorySetting::changeHistoryTitle]\n");
    QCOMPARE(history.takeCalls(), QByteArray());
    COMPARE_BYTES(saved(history),
                  writtenFile(written("000", "t", "u:a", "2026/01/09 00:00")
                              + written("001", "\xf0\x9f\x98\x80", "v", "2026/12/31 23:59")));
}

void tst_VLMC_HistorySetting::changeHistory_createsNothing()
{
    VLMC_HistorySetting history;
    VLMS_History change = visit("t", "v", "2026/12/31 23:59:59");
    QString title = utf8("t");
    history.changeHistory(0, change);
    history.changeHistoryTitle(0, title);
    QVERIFY(!history.getXMLRootNode());
    VLMC_XMLNode *const entry = addRaw(history.createXMLRootNode(), "any", "", "000");
    VLMC_XMLNode *const url = addRaw(entry, "url", "x", nullptr);
    url->setTextType(1);
    for (const int id : {-1, 1}) {
        history.changeHistory(id, change);
        history.changeHistoryTitle(id, title);
    }
    QCOMPARE(url->getText(), utf8("x"));
    history.changeHistory(0, change);
    history.changeHistoryTitle(0, title);
    QCOMPARE(entry->getXMLNodeChildren().size(), 1);
    QCOMPARE(url->getText(), utf8("v"));
    QCOMPARE(int(url->getTextType()), 1);
}

void tst_VLMC_HistorySetting::deleteHistory_renumbers()
{
    WatchedStore<VLMC_HistorySetting> history;
    load(history, daysOf("abc"));
    history.takeCalls();
    history.deleteHistory(1);
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::deleteHistory] si_nodeNum:1\n");
    COMPARE_BYTES(history.takeCalls(), "deleteXMLNodeByID 1 id\nsetIDforChildren id\n");
    COMPARE_BYTES(titles(history), "a,c,");
    COMPARE_BYTES(ids(history), "000,001,");
}

void tst_VLMC_HistorySetting::deleteHistory_ignoresUnknownIds()
{
    VLMC_HistorySetting history;
    history.deleteHistory(3);
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::deleteHistory] si_nodeNum:3\n");
    QVERIFY(!history.getXMLRootNode());
    addRaw(history.createXMLRootNode(), "pageInfo", "", "007");
    history.deleteHistory(3);
    COMPARE_BYTES(ids(history), "000,");
}

void tst_VLMC_HistorySetting::sortHistory_isStable()
{
    QByteArray entries;
    QByteArray expected;
    for (int i = 0; i < 60; ++i) {
        const QByteArray title = "t" + QByteArray::number(i);
        entries += entryOf(title, i % 2 ? "2026/01/01 00:00" : "2026/01/01 00:01");
    }
    for (int i = 0; i < 60; i += 2) {
        expected += "t" + QByteArray::number(i) + ',';
    }
    for (int i = 1; i < 60; i += 2) {
        expected += "t" + QByteArray::number(i) + ',';
    }
    VLMC_HistorySetting history;
    load(history, entries);
    COMPARE_BYTES(titles(history), expected);
    history.sortHistory();
    COMPARE_BYTES(titles(history), expected);
}

void tst_VLMC_HistorySetting::sortHistory_putsInvalidTimesLast()
{
    VLMC_HistorySetting history;
    load(history, entryOf("a", "never") + entryOf("b", "0001/01/01 00:00")
                      + entryOf("c", "2026/1/1 1:1") + entryOf("d", "9999/12/31 23:59")
                      + entryOf("e", "") + entryOf("f", "1969/12/31 12:00"));
    COMPARE_BYTES(titles(history), "d,f,b,a,c,e,");
    COMPARE_BYTES(ids(history), "000,001,002,003,004,005,");
}

void tst_VLMC_HistorySetting::sortHistory_stopsBeforeLoad()
{
    WatchedStore<VLMC_HistorySetting> history;
    history.sortHistory();
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::sortHistory]\n");
    QCOMPARE(history.takeCalls(), QByteArray());
}

void tst_VLMC_HistorySetting::sortHistory_keepsEmptyHistoryEmpty()
{
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    history.sortHistory();
    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::sortHistory]\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] "
                                    + hexAddress(root) + '\n');
    QCOMPARE(history.getXMLNodeCnt(), 0);
}

void tst_VLMC_HistorySetting::sortHistory_rebuildsEveryEntry()
{
    const QByteArray rest = "<url>u</url><dateTime>" + QByteArray(kDay) + "</dateTime></pageInfo>";
    VLMC_HistorySetting history;
    load(history, "<pageInfo><title>t<x/></title>" + rest + "<pageInfo><title a=\"b\">t</title>"
                      + rest + "<pageInfo><title><![CDATA[t]]></title>" + rest
                      + "<pageInfo>text<title>t</title>" + rest + "<pageInfo><title>t</title>"
                      + QByteArray(rest).replace("</page", "<x/></page")
                      + "<pageInfo a=\"b\">text<dateTime c=\"d\">2026/1/1 1:1</dateTime>"
                        "<url>u</url><title>t</title><title>second</title></pageInfo>"
                        "<pageInfo><title>t</title><url>u</url><dateTime>x</dateTime></pageInfo>"
                        "<pageInfo/><folder id=\"x\"><title>f</title><url>u:f</url></folder>"
                      + daysOf("a"));
    QByteArray expected = written("000", "a", "u:a", "2026/01/09 00:00");
    for (int id = 1; id < 8; ++id) {
        expected += written(threeDigits(id), "t", "u", id < 6 ? kDay : "");
    }
    COMPARE_BYTES(saved(history),
                  writtenFile(expected
                              + "    <pageInfo id=\"008\">\n        <title/>\n        <url/>\n"
                                "        <dateTime/>\n    </pageInfo>\n"
                              + written("009", "f", "u:f", "")));
}

// The first that carries an id is the one that it leads to; what no id leads to is lost, and an id
// that leads nowhere leaves its line in the log.
void tst_VLMC_HistorySetting::sortHistory_readsByIdOnce()
{
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    addRaw(addRaw(root, "pageInfo", "", "003"), "title", "a", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "1"), "title", "b", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "001"), "title", "c", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "-1"), "title", "d", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "6"), "title", "e", nullptr);
    addRaw(addRaw(root, "pageInfo", "", nullptr), "title", "f", nullptr);

    history.sortHistory();

    COMPARE_BYTES(loggedText(), "3 [VLMC_HistorySetting::sortHistory]\n"
                                    + QByteArray(kGetLine).repeated(6)
                                    + "3 [VLMC_XMLSetting::deleteRootChildren] " + hexAddress(root)
                                    + '\n' + QByteArray(kSetLine).repeated(2));
    COMPARE_BYTES(titles(history), "b,a,");
    COMPARE_BYTES(ids(history), "000,001,");
}

void tst_VLMC_HistorySetting::sortHistory_keepsTheRoot()
{
    VLMC_HistorySetting history;
    loadFile(history, "<visits a=\"b\">" + daysOf("a") + "</visits>");
    VLMC_XMLNode *const root = history.getXMLRootNode();
    history.sortHistory();
    QCOMPARE(history.getXMLRootNode(), root);
    QCOMPARE(root->getName(), utf8("visits"));
    QCOMPARE(root->getAttribute().value(utf8("a")).toString(), utf8("b"));
}

void tst_VLMC_HistorySetting::sortHistory_logsNullChildrenEveryTime()
{
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    addRaw(root, "pageInfo", "", "000");
    addRaw(root, "pageInfo", "", "001");
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    const QByteArray numbering =
        "1 [VLMC_XMLSetting::setIDforChildren] " + hexAddress(root) + " Why Pass??\n";

    history.sortHistory();

    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_HistorySetting::sortHistory]\n" + QByteArray(kGetLine).repeated(3)
                      + "3 [VLMC_XMLSetting::deleteRootChildren] " + hexAddress(root)
                      + "\n1 [VLMC_XMLSetting::deleteRootChildren] " + hexAddress(root)
                      + " Why Pass??\n" + (kSetLine + numbering).repeated(2) + numbering);
}

void tst_VLMC_HistorySetting::sortHistory_leavesThoseBehindTheNumberedTheLastId_data()
{
    QTest::addColumn<int>("nulls");
    QTest::newRow("visits alone") << 0;
    QTest::newRow("null children") << 2;
}

void tst_VLMC_HistorySetting::sortHistory_leavesThoseBehindTheNumberedTheLastId()
{
    QFETCH(int, nulls);
    const int visits = 1001;
    VLMC_HistorySetting history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    for (int id = 0; id < visits; ++id) {
        addRaw(root, "pageInfo", "", QByteArray::number(id).constData());
    }
    for (int i = 0; i < nulls; ++i) {
        root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    }

    history.sortHistory();

    const QList<VLMC_XMLNode *> children = root->getXMLNodeChildren();
    QCOMPARE(int(children.size()), visits + nulls);
    const QString idName = utf8("id");
    for (int i = 0; i < visits; ++i) {
        const QByteArray id = QByteArray::number(qMin(i, 998)).rightJustified(3, '0');
        COMPARE_BYTES(children.at(i)->getAttribute().value(idName).toString().toUtf8(), id);
    }
    for (int i = 0; i < nulls; ++i) {
        QVERIFY(!children.at(visits + i));
    }
}

void tst_VLMC_HistorySetting::sortHistory_leavesNumberingToAnOverride()
{
    const int visits = 1000;
    UnnumberedHistory history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    for (int id = 0; id < visits; ++id) {
        addRaw(root, "pageInfo", "", QByteArray::number(id).constData());
    }

    history.sortHistory();

    const QList<VLMC_XMLNode *> children = root->getXMLNodeChildren();
    QCOMPARE(int(children.size()), visits);
    for (VLMC_XMLNode *const child : children) {
        QVERIFY(child->getAttribute().isEmpty());
    }
}

void tst_VLMC_HistorySetting::sortHistory_callsVirtualOperations()
{
    WatchedStore<VLMC_HistorySetting> history;
    VLMC_XMLNode *const root = history.createXMLRootNode();
    addRaw(addRaw(root, "pageInfo", "", "000"), "title", "a", nullptr);
    addRaw(addRaw(root, "pageInfo", "", "001"), "dateTime", "2026/01/01 00:00", nullptr);

    history.sortHistory();

    COMPARE_BYTES(history.takeCalls(), "deleteAllSetting\n" + additionOf("", "a", "", "")
                                           + additionOf("", "", "", kDay)
                                           + "setIDforChildren id\n");
}

void tst_VLMC_HistorySetting::operatorLess_putsTheLaterFirst()
{
    const VLMS_History older = visit("a", "a", "2026/01/01 00:00:00");
    const VLMS_History newer = visit("a", "a", "2026/01/01 00:00:01");
    const VLMS_History same = visit("b", "b", "2026/01/01 00:00:00");
    QVERIFY(newer < older);
    QVERIFY(!(older < newer));
    QVERIFY(!(older < same));
    QVERIFY(!(same < older));
}

void tst_VLMC_HistorySetting::ClipString_countsBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxBytes");
    QTest::addColumn<QString>("kept");
    QTest::newRow("as long as the limit") << utf8("abc") << 3 << utf8("abc");
    QTest::newRow("one byte over") << utf8("abcd") << 3 << utf8("abc");
    QTest::newRow("limit 0") << utf8("abc") << 0 << utf8("abc");
    QTest::newRow("limit -1") << utf8("abc") << -1 << utf8("abc");
    QTest::newRow("limit 1") << utf8("abc") << 1 << utf8("a");
    QTest::newRow("emoji fits") << utf8("\xf0\x9f\x98\x80") << 4 << utf8("\xf0\x9f\x98\x80");
    QTest::newRow("two 3-byte characters in 5")
        << utf8("\xe3\x81\x82\xe3\x81\x84") << 5 << utf8("\xe3\x81\x82");
    QTest::newRow("empty") << QString() << 3 << QString();
}

void tst_VLMC_HistorySetting::ClipString_countsBytes()
{
    QFETCH(QString, text);
    QFETCH(int, maxBytes);
    QFETCH(QString, kept);
    VLMC_HistorySetting history;
    QCOMPARE(history.ClipString(text, maxBytes), kept);
    QCOMPARE(loggedText(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_VLMC_HistorySetting)
#include "tst_VLMC_HistorySetting.moc"
