#include "bookmarks/VLMC_BookmarksSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/WatchedStore.h"

namespace
{
const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// Has an empty document from the start, and these bookmarks of one letter, "a.PNG" and so on.
template <typename Store = VLMC_BookmarksSetting>
class Filled : public Store
{
public:
    explicit Filled(const char *titles = "");
};

bool add(VLMC_BookmarksSetting &bookmarks, const char *title, char atFront = 0)
{
    VLMS_Bookmark bookmark;
    bookmark.title = utf8(title);
    bookmark.url = utf8("http://") + bookmark.title;
    bookmark.thumbnailPath = bookmark.title + utf8(".PNG");
    return bookmarks.setBookmark(&bookmark, atFront);
}

template <typename Store>
Filled<Store>::Filled(const char *titles)
{
    this->createXMLRootNode();
    for (const char *title = titles; *title; ++title) {
        add(*this, QByteArray(1, *title).constData());
    }
    takeLog();
}

// "<id>=<title> " for each entry.
QByteArray listed(VLMC_BookmarksSetting &bookmarks)
{
    QByteArray list;
    const QList<VLMC_XMLNode *> entries = bookmarks.getXMLRootNode()->getXMLNodeChildren();
    for (VLMC_XMLNode *const entry : entries) {
        QString title = utf8("title");
        VLMC_XMLNode *const node = entry->getXMLNodeChildByName(title);
        list += entry->getAttribute().value(utf8("id")).toString().toUtf8() + "="
                + (node ? node->getText().toUtf8() : QByteArray("-")) + " ";
    }
    return list;
}

QString letters(int count) { return QString(count, QLatin1Char('x')); }

void addTexts()
{
    const QString emoji = utf8("\xf0\x9f\x98\x80");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fits");
    QTest::newRow("empty") << QString::fromLatin1("") << true;
    QTest::newRow("256 bytes") << letters(256) << true;
    QTest::newRow("257 bytes") << letters(257) << false;
    QTest::newRow("256 bytes, 3 a character") << QString(85, QChar(0x3042)) + letters(1) << true;
    QTest::newRow("257 bytes, 3 a character") << QString(85, QChar(0x3042)) + letters(2) << false;
    QTest::newRow("256 bytes, emoji") << emoji.repeated(64) << true;
    QTest::newRow("257 bytes, emoji") << emoji.repeated(64) + letters(1) << false;
    QTest::newRow("256 bytes, supplementary")
        << utf8("\xf0\xa0\xae\xb7").repeated(63) + letters(4) << true;
    QTest::newRow("257 bytes, supplementary")
        << utf8("\xf0\xa0\xae\xb7").repeated(63) + letters(5) << false;
}
} // namespace

class tst_VLMC_BookmarksSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void loadBookmark_readsNumbersAndCompletesPaths();
    void loadBookmark_recordsMaxAndNumber();
    void saveBookmark_writesTheListAndKeepsPaths();
    void loadBookmark_takes1500Entries();
    void getBookmark_readsEachFieldByItsRule();
    void getBookmark_leavesFieldsWithoutElement();
    void getBookmark_missesWithoutEntry();
    void setBookmark_addsAtTheEndAndAtTheFront();
    void setBookmark_limitsUrlAndPath_data() { addTexts(); }
    void setBookmark_limitsUrlAndPath();
    void setBookmark_clipsTitle_data();
    void setBookmark_clipsTitle();
    void setBookmark_goesThroughVirtualOperations();
    void setBookmark_failsWithoutNode();
    void setBookmark_keepsNothingBeforeLoad();
    void urlAccessors_limitBytes_data() { addTexts(); }
    void urlAccessors_limitBytes();
    void deleteBookmark_closesTheGap_data();
    void deleteBookmark_closesTheGap();
    void accessors_failWithoutEntryOrArgument();
    void getBookmarkChildNode_findsEachElement();
    void ClipString_cutsBytes_data();
    void ClipString_cutsBytes();
};

void tst_VLMC_BookmarksSetting::loadBookmark_readsNumbersAndCompletesPaths()
{
    TestDirectory directory;
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark id=\"9\" x=\"y\"><thumbnail>000003.PNG</thumbnail><title>A"
              "</title><href>u</href></bookmark>"
              "<bookmark><href>v</href><title>B</title><thumbnail>000017.PNG</thumbnail></bookmark>"
              "<bookmark><href>w</href><title>C</title><thumbnail>000005.PNG</thumbnail></bookmark>"
              "</bookmarks>");
    VLMC_BookmarksSetting bookmarks;
    int lastNumber = 0;

    bookmarks.loadBookmark(directory.pathPointer(), 1, lastNumber);

    COMPARE_BYTES(loggedText(), "3 [VLMC_BookmarksSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n"
                                "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_BookmarksSetting::getLastNumber] last number:17\n"
                                "3 [VLMC_BookmarksSetting::loadBookmark] end\n");
    QCOMPARE(lastNumber, 17);
    QCOMPARE(bookmarks.getBookmarkCnt(), 3);
    COMPARE_BYTES(listed(bookmarks), "000=A 001=B 002=C ");
    QVERIFY(!bookmarks.getXMLRootNode()->getXMLNodeChildren().at(0)->isAttribute(utf8("x")));
    VLMS_Bookmark bookmark;
    QVERIFY(bookmarks.getBookmark(0, &bookmark));
    QCOMPARE(bookmark.title, utf8("A"));
    QCOMPARE(bookmark.url, utf8("u"));
    QCOMPARE(bookmark.thumbnailPath, directory.file("thumbnail/000003.PNG"));
}

// A refused load keeps both.
void tst_VLMC_BookmarksSetting::loadBookmark_recordsMaxAndNumber()
{
    TestDirectory directory;
    WatchedStore<VLMC_BookmarksSetting> bookmarks;
    QCOMPARE(bookmarks.max(), 0);
    int lastNumber = 77;
    bookmarks.loadBookmark(directory.pathPointer(), 5, lastNumber);
    QCOMPARE(lastNumber, 0);
    lastNumber = 77;
    bookmarks.loadBookmark(nullptr, 1, lastNumber);
    bookmarks.loadBookmark(directory.pathPointer(), 0, lastNumber);
    bookmarks.saveBookmark(directory.pathPointer(), 1);
    QCOMPARE(lastNumber, 77);
    QCOMPARE(bookmarks.max(), 5);
    bookmarks.loadBookmark(directory.pathPointer(), 1, lastNumber);
    QCOMPARE(bookmarks.max(), 1);
}

// Also a second time.
void tst_VLMC_BookmarksSetting::saveBookmark_writesTheListAndKeepsPaths()
{
    TestDirectory directory;
    const QByteArray document = QByteArray(kDeclaration)
                                + "<bookmarks docInfo=\"1.0\">\n"
                                  "    <bookmark id=\"000\">\n"
                                  "        <href>http://a/?b&amp;c</href>\n"
                                  "        <title> &lt;\xe3\x81\x82&gt; &quot;b&quot; </title>\n"
                                  "        <thumbnail>000042.PNG</thumbnail>\n"
                                  "    </bookmark>\n"
                                  "    <other id=\"001\"><![CDATA[kept]]></other>\n"
                                  "    <bookmark id=\"002\">\n"
                                  "        <href/>\n"
                                  "        <title/>\n"
                                  "        <thumbnail>000002.PNG</thumbnail>\n"
                                  "    </bookmark>\n"
                                  "</bookmarks>\n";
    writeFile(directory.file("bookmark.xml"), document);
    VLMC_BookmarksSetting bookmarks;
    int lastNumber = 0;
    bookmarks.loadBookmark(directory.pathPointer(), 1, lastNumber);
    for (int i = 0; i < 2; ++i) {
        bookmarks.saveBookmark(directory.pathPointer(), 1);
        COMPARE_BYTES(readFile(directory.file("bookmark.xml")), document);
        VLMS_Bookmark read;
        QVERIFY(bookmarks.getBookmark(0, &read));
        QCOMPARE(read.thumbnailPath, directory.file("thumbnail/000042.PNG"));
    }
}

void tst_VLMC_BookmarksSetting::loadBookmark_takes1500Entries()
{
    TestDirectory directory;
    QByteArray document = "<bookmarks>";
    for (int i = 0; i < 1500; ++i) {
        const QByteArray number = QByteArray::number(i);
        document += "<bookmark><href>u" + number + "</href><title>t" + number
                    + "</title><thumbnail>" + number.rightJustified(6, '0')
                    + ".PNG</thumbnail></bookmark>";
    }
    writeFile(directory.file("bookmark.xml"), document + "</bookmarks>");
    VLMC_BookmarksSetting bookmarks;
    int lastNumber = 0;

    bookmarks.loadBookmark(directory.pathPointer(), 1, lastNumber);

    QCOMPARE(lastNumber, 1499);
    QCOMPARE(bookmarks.getXMLNodeCnt(), 1500);
    QCOMPARE(bookmarks.getBookmarkCnt(), 999);
    VLMS_Bookmark bookmark;
    QVERIFY(bookmarks.getBookmark(998, &bookmark));
    QCOMPARE(bookmark.title, utf8("t998"));
    QVERIFY(!bookmarks.getBookmark(999, &bookmark));
    bookmarks.deleteBookmark(0);
    QVERIFY(bookmarks.getBookmark(998, &bookmark));
    QCOMPARE(bookmark.title, utf8("t999"));
    QCOMPARE(bookmark.thumbnailPath, directory.file("thumbnail/000999.PNG"));
    bookmarks.saveBookmark(directory.pathPointer(), 1);
    const QByteArray saved = readFile(directory.file("bookmark.xml"));
    QCOMPARE(saved.count("<bookmark id="), 999);
    QCOMPARE(saved.count("<bookmark>"), 500);
    QVERIFY(saved.contains("<thumbnail>001499.PNG</thumbnail>"));
}

void tst_VLMC_BookmarksSetting::getBookmark_readsEachFieldByItsRule()
{
    Filled<> bookmarks("a");
    QString longText = letters(257);
    for (char which = 0; which < 3; ++which) {
        bookmarks.getBookmarkChildNode(0, which)->setText(longText);
    }
    VLMS_Bookmark bookmark;
    bookmark.title = bookmark.url = bookmark.thumbnailPath = utf8("mine");
    QVERIFY(bookmarks.getBookmark(0, &bookmark));
    QCOMPARE(bookmark.title, QString());
    QCOMPARE(bookmark.url, utf8("about:blank"));
    QCOMPARE(bookmark.thumbnailPath, QString());
}

void tst_VLMC_BookmarksSetting::getBookmark_leavesFieldsWithoutElement()
{
    Filled<> bookmarks("a");
    VLMC_XMLNode *const entry = bookmarks.getXMLRootNode()->getXMLNodeChildren().first();
    for (char which = 0; which < 3; ++which) {
        VLMC_XMLNode *const child = bookmarks.getBookmarkChildNode(0, which);
        entry->removeXMLNode(child);
        delete child;
    }
    VLMS_Bookmark bookmark;
    bookmark.title = utf8("t");
    bookmark.url = utf8("u");
    bookmark.thumbnailPath = utf8("p");
    QVERIFY(bookmarks.getBookmark(0, &bookmark));
    QCOMPARE(bookmark.title + bookmark.url + bookmark.thumbnailPath, utf8("tup"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BookmarksSetting::getBookmark_missesWithoutEntry()
{
    VLMC_BookmarksSetting unloaded;
    Filled<> bookmarks("a");
    VLMS_Bookmark bookmark;
    bookmark.title = utf8("mine");
    QVERIFY(!unloaded.getBookmark(0, &bookmark));
    QVERIFY(!bookmarks.getBookmark(0, nullptr));
    QVERIFY(!bookmarks.getBookmark(1, &bookmark));
    QVERIFY(!bookmarks.getBookmark(-1, &bookmark));
    QCOMPARE(bookmark.title, utf8("mine"));
}

// Also the same twice.
void tst_VLMC_BookmarksSetting::setBookmark_addsAtTheEndAndAtTheFront()
{
    Filled<> bookmarks("aab");
    COMPARE_BYTES(listed(bookmarks), "000=a 001=a 002=b ");
    QVERIFY(add(bookmarks, "d", 1));
    COMPARE_BYTES(loggedText(), "3 [VLMC_BookmarksSetting::setBookmark]\n");
    QVERIFY(add(bookmarks, "e", 2));
    COMPARE_BYTES(listed(bookmarks), "000=e 001=d 002=a 003=a 004=b ");
}

void tst_VLMC_BookmarksSetting::setBookmark_limitsUrlAndPath()
{
    QFETCH(QString, text);
    QFETCH(bool, fits);
    VLMS_Bookmark withUrl;
    VLMS_Bookmark withPath;
    withUrl.url = withPath.thumbnailPath = text;
    Filled<> bookmarks;
    QVERIFY(!bookmarks.setBookmark(nullptr, 0));
    QCOMPARE(bookmarks.setBookmark(&withUrl, 0), fits);
    QCOMPARE(bookmarks.setBookmark(&withPath, 0), fits);
    COMPARE_BYTES(loggedText(), QByteArray("3 [VLMC_BookmarksSetting::setBookmark]\n").repeated(3));
    QCOMPARE(bookmarks.getBookmarkCnt(), fits ? 2 : 0);
    if (fits) {
        QCOMPARE(bookmarks.getBookmarkChildNode(0, 1)->getText(), text);
        QCOMPARE(bookmarks.getBookmarkChildNode(1, 2)->getText(), text);
    }
}

void tst_VLMC_BookmarksSetting::setBookmark_clipsTitle_data()
{
    const QString emoji = utf8("\xf0\x9f\x98\x80");
    const QChar a(0x3042);
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("stored");
    QTest::newRow("100 bytes") << letters(100) << letters(100);
    QTest::newRow("101 bytes") << letters(101) << letters(100);
    QTest::newRow("300 bytes") << letters(300) << letters(100);
    QTest::newRow("100 bytes, 3 a character")
        << QString(33, a) + letters(1) << QString(33, a) + letters(1);
    QTest::newRow("102 bytes, 3 a character") << QString(34, a) << QString(33, a);
    QTest::newRow("100 bytes, emoji") << emoji.repeated(25) << emoji.repeated(25);
    QTest::newRow("104 bytes, emoji") << emoji.repeated(26) << emoji.repeated(25);
    QTest::newRow("emoji cut after 1 byte") << letters(99) + emoji << letters(99);
    QTest::newRow("emoji cut after 2 bytes") << letters(98) + emoji << letters(98);
    // Three bytes are left of it: room for one replacement character.
    QTest::newRow("emoji cut after 3 bytes") << letters(97) + emoji << letters(97) + QChar(0xfffd);
    QTest::newRow("100 bytes with a zero character")
        << letters(50) + QChar(0) + letters(49) << letters(50) + QChar(0) + letters(49);
    QTest::newRow("101 bytes with a zero character")
        << letters(50) + QChar(0) + letters(50) << letters(50);
}

// What is stored by setBookmarkTitle stays whole, and a title over the limit reads as none.
void tst_VLMC_BookmarksSetting::setBookmark_clipsTitle()
{
    QFETCH(QString, title);
    QFETCH(QString, stored);
    Filled<> bookmarks;
    VLMS_Bookmark bookmark;
    bookmark.title = title;
    QVERIFY(bookmarks.setBookmark(&bookmark, 0));
    QCOMPARE(bookmark.title, title);
    QCOMPARE(bookmarks.getBookmarkChildNode(0, 0)->getText(), stored);
    QString read;
    QVERIFY(bookmarks.getBookmarkTitle(0, &read));
    QCOMPARE(read, stored);

    QVERIFY(bookmarks.setBookmarkTitle(0, &title));
    QCOMPARE(bookmarks.getBookmarkChildNode(0, 0)->getText(), title);
    read = utf8("mine");
    QVERIFY(bookmarks.getBookmarkTitle(0, &read));
    QCOMPARE(read, title == stored ? title : utf8("mine"));
}

void tst_VLMC_BookmarksSetting::setBookmark_goesThroughVirtualOperations()
{
    Filled<WatchedStore<VLMC_BookmarksSetting>> bookmarks;
    QVERIFY(add(bookmarks, "a", 3));
    COMPARE_BYTES(bookmarks.takeCalls(), "addXMLChild  bookmark '' 0 0 3\n"
                                         "addXMLChild bookmark href 'http://a' 0 0 0\n"
                                         "addXMLChild bookmark title 'a' 0 0 0\n"
                                         "addXMLChild bookmark thumbnail 'a.PNG' 0 0 0\n"
                                         "setIDforChildren id\n");
    bookmarks.deleteBookmark(0);
    COMPARE_BYTES(bookmarks.takeCalls(), "deleteXMLNodeByID 0 id\nsetIDforChildren id\n");
}

void tst_VLMC_BookmarksSetting::setBookmark_failsWithoutNode()
{
    Filled<WatchedStore<VLMC_BookmarksSetting>> bookmarks;
    bookmarks.refusesNodes = true;
    QVERIFY(!add(bookmarks, "a"));
    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_BookmarksSetting::setBookmark]\n"
                  "1 [VLMC_BookmarksSetting::setBookmark] Failed to new VLMC_XMLNode.\n");
    COMPARE_BYTES(bookmarks.takeCalls(), "addXMLChild  bookmark '' 0 0 0\n");
    QCOMPARE(bookmarks.getXMLNodeCnt(), 0);
}

void tst_VLMC_BookmarksSetting::setBookmark_keepsNothingBeforeLoad()
{
    WatchedStore<VLMC_BookmarksSetting> bookmarks;
    QVERIFY(add(bookmarks, "a"));
    QVERIFY(add(bookmarks, "a", 1));
    QVERIFY(!bookmarks.getXMLRootNode());
    QCOMPARE(bookmarks.livingNodes(), 8);
    runDeferredDeletes();
    QCOMPARE(bookmarks.livingNodes(), 0);
    QCOMPARE(bookmarks.getBookmarkCnt(), 0);
    bookmarks.deleteBookmark(0);
}

void tst_VLMC_BookmarksSetting::urlAccessors_limitBytes()
{
    QFETCH(QString, text);
    QFETCH(bool, fits);
    Filled<> bookmarks("a");
    QCOMPARE(bookmarks.setBookmarkURL(0, &text), fits);
    VLMC_XMLNode *const url = bookmarks.getBookmarkChildNode(0, 1);
    QCOMPARE(url->getText(), fits ? text : utf8("http://a"));
    url->setText(text);
    QString read;
    QVERIFY(bookmarks.getBookmarkURL(0, &read));
    QCOMPARE(read, fits ? text : utf8("about:blank"));
}

void tst_VLMC_BookmarksSetting::deleteBookmark_closesTheGap_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("left");
    QTest::newRow("first") << 0 << QByteArray("000=b 001=c ");
    QTest::newRow("middle") << 1 << QByteArray("000=a 001=c ");
    QTest::newRow("last") << 2 << QByteArray("000=a 001=b ");
    QTest::newRow("behind the last") << 3 << QByteArray("000=a 001=b 002=c ");
    QTest::newRow("-1") << -1 << QByteArray("000=a 001=b 002=c ");
}

void tst_VLMC_BookmarksSetting::deleteBookmark_closesTheGap()
{
    QFETCH(int, id);
    QFETCH(QByteArray, left);
    Filled<> bookmarks("abc");
    bookmarks.deleteBookmark(id);
    COMPARE_BYTES(loggedText(), "3 [VLMC_BookmarksSetting::deleteBookmark] si_nodeNum:"
                                    + QByteArray::number(id) + '\n');
    COMPARE_BYTES(listed(bookmarks), left);
}

void tst_VLMC_BookmarksSetting::accessors_failWithoutEntryOrArgument()
{
    VLMC_BookmarksSetting unloaded;
    Filled<> bookmarks("a");
    // A bookmark without elements has the id 1.
    QString name = utf8("bookmark");
    QString id = utf8("id");
    (new VLMC_XMLNode(bookmarks.getXMLRootNode(), 0))->setName(name);
    bookmarks.setIDforChildren(id);
    QString text = utf8("mine");
    const auto fails = [&text](VLMC_BookmarksSetting &store, int entry, QString *argument) {
        return !store.getBookmarkTitle(entry, argument) && !store.setBookmarkTitle(entry, argument)
               && !store.getBookmarkURL(entry, argument) && !store.setBookmarkURL(entry, argument)
               && text == utf8("mine");
    };
    QVERIFY(fails(unloaded, 0, &text));
    QVERIFY(fails(bookmarks, 0, nullptr));
    for (const int without : {-1, 1, 2}) {
        QVERIFY(fails(bookmarks, without, &text));
    }
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BookmarksSetting::getBookmarkChildNode_findsEachElement()
{
    Filled<> bookmarks("a");
    QCOMPARE(bookmarks.getBookmarkChildNode(0, 0)->getName(), utf8("title"));
    QCOMPARE(bookmarks.getBookmarkChildNode(0, 1)->getName(), utf8("href"));
    QCOMPARE(bookmarks.getBookmarkChildNode(0, 2)->getName(), utf8("thumbnail"));
    QVERIFY(!bookmarks.getBookmarkChildNode(0, 3));
    QVERIFY(!bookmarks.getBookmarkChildNode(0, char(-1)));
    QVERIFY(!bookmarks.getBookmarkChildNode(1, 0));
    // The element's name does not matter.
    QString name = utf8("other");
    bookmarks.getXMLRootNode()->getXMLNodeChildren().at(0)->setName(name);
    QVERIFY(bookmarks.getBookmarkChildNode(0, 0));
}

void tst_VLMC_BookmarksSetting::ClipString_cutsBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxBytes");
    QTest::addColumn<QString>("clipped");
    QTest::newRow("0 changes nothing") << utf8("abc") << 0 << utf8("abc");
    QTest::newRow("-1 changes nothing") << utf8("abc") << -1 << utf8("abc");
    QTest::newRow("1") << utf8("abc") << 1 << utf8("a");
    QTest::newRow("exact") << utf8("abc") << 3 << utf8("abc");
    QTest::newRow("cut character") << utf8("a\xe3\x81\x82") << 3 << utf8("a");
    QTest::newRow("whole character") << utf8("a\xe3\x81\x82") << 4 << utf8("a\xe3\x81\x82");
    QTest::newRow("nothing fits") << utf8("\xf0\x9f\x98\x80") << 2 << QString::fromLatin1("");
    QTest::newRow("zero ends the text") << utf8("ab") + QChar(0) + utf8("cd") << 10 << utf8("ab");
}

void tst_VLMC_BookmarksSetting::ClipString_cutsBytes()
{
    QFETCH(QString, text);
    QFETCH(int, maxBytes);
    QFETCH(QString, clipped);
    VLMC_BookmarksSetting bookmarks;
    QCOMPARE(bookmarks.ClipString(text, maxBytes), clipped);
}

QTEST_GUILESS_MAIN(tst_VLMC_BookmarksSetting)
#include "tst_VLMC_BookmarksSetting.moc"
