// What becomes of an operation when there is no memory for a new node.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"

#include <new>

namespace
{
const char kFail[] = "1 [VLMC_XMLSetting::addXMLChild] Fail\n";

// Nodes that there is memory for; negative for no limit.
int nodesLeft = -1;
} // namespace

// Replaces the operator new that nodes are made with.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    if (nodesLeft == 0) {
        return nullptr;
    }
    nodesLeft = nodesLeft < 0 ? nodesLeft : nodesLeft - 1;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

namespace
{
// Makes a store's entries, and then uses whatever was made.
typedef void (*Operation)(const QString &directory);

void useBookmarks(const QString &)
{
    VLMC_BookmarksSetting store;
    store.createXMLRootNode();
    VLMS_Bookmark bookmark = {utf8("title"), utf8("url"), utf8("000001.PNG")};
    store.setBookmark(&bookmark, 0);
    store.setBookmark(&bookmark, 1);
    store.getBookmark(0, &bookmark);
    store.setBookmarkTitle(0, &bookmark.title);
    store.removeThumbnailFilePath();
}

void useHistory(const QString &)
{
    VLMC_HistorySetting store;
    store.createXMLRootNode();
    VLMS_History visit = {utf8("title"), utf8("url"), QDateTime(QDate(2024, 1, 2), QTime(3, 4))};
    store.setHistory(&visit);
    store.setHistory(&visit);
    store.sortHistory();
    store.changeHistory(0, visit);
    store.getHistory(0, &visit);
    store.getHistoryIndex(visit.url);
}

void useCredentials(const QString &)
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = {utf8("host"), utf8("80"), 0, "user", "passwd"};
    store.setAuthInfo(&info);
    store.updateAuthInfo(&info);
    store.getAuthInfo(0, &info);
}

void useCookies(const QString &)
{
    VLMC_CookieSetting store;
    store.createXMLRootNode();
    QNetworkCookie cookie("name", "value");
    store.addCookieInfo(cookie);
    store.addCookieInfo(cookie);
    QString id = utf8("id");
    store.setIDforChildren(id);
    store.getAllCookieInfo();
}

void useFonts(const QString &)
{
    VLMC_FontListSetting store;
    store.createXMLRootNode();
    store.addFont(utf8("one"));
    store.addFont(utf8("two"));
    store.getFont(0);
}

void useCommonPreferences(const QString &directory)
{
    VLMC_BrowserCommonSetting store;
    QString path = directory;
    store.loadSetting(&path);
    store.setUseProxyInfo(1);
    store.setProxyPasswordStr("passwd");
    store.setUseTLS12(0);
    QByteArray passwd;
    store.getProxyPasswordStr(&passwd);
    store.setSecurityAttribute_Version(nullptr);
}

void useUserPreferences(const QString &directory)
{
    VLMC_BrowserUserSetting store;
    QString path = directory;
    store.loadSetting(&path);
    store.setHomePage(utf8("home"));
    store.setZoomInfo(3);
    store.setCookieDeleteTiming(3);
    store.CnvOldtypeDeletetiming();
    store.getHomePage(&path);
}

void packThumbnails(const QString &directory)
{
    QByteArray path = directory.toLatin1();
    QByteArray file = path + "packed.xml";
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailPngToXML(path.data(), file.data());
}
} // namespace

Q_DECLARE_METATYPE(Operation)

class tst_NoMemory : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();

    void addXMLChild_reportsAMissingNode();
    void setElement_givesNull();
    void setBookmark_reportsAMissingEntry();
    void stores_goOnWithoutMemory_data();
    void stores_goOnWithoutMemory();
};

void tst_NoMemory::cleanup()
{
    nodesLeft = -1;
    runDeferredDeletes();
}

void tst_NoMemory::addXMLChild_reportsAMissingNode()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    QString name = utf8("name");
    QString text = utf8("text");
    char textType = 0;
    QXmlStreamAttributes attributes;
    takeLog();
    nodesLeft = 0;
    QVERIFY(!store.addXMLChild(root, name, text, textType, attributes, 0));
    COMPARE_BYTES(loggedText(), kFail);
    QVERIFY(!store.addXMLChild(nullptr, name, text, textType, attributes, 0));
    COMPARE_BYTES(loggedText(), kFail);
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_NoMemory::setElement_givesNull()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    VLMC_XMLNode *const there = newNode(root, "there", "old");
    takeLog();
    nodesLeft = 0;
    QVERIFY(!store.setElement(root, utf8("missing"), utf8("text"), QXmlStreamAttributes(), 0, 0));
    COMPARE_BYTES(loggedText(), kFail);
    // What exists needs no memory.
    QCOMPARE(store.setElement(root, utf8("there"), utf8("new"), QXmlStreamAttributes(), 0, 0),
             there);
    QCOMPARE(described(root), QByteArray("[there0'new']"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_NoMemory::setBookmark_reportsAMissingEntry()
{
    VLMC_BookmarksSetting store;
    store.createXMLRootNode();
    VLMS_Bookmark bookmark = {utf8("title"), utf8("url"), utf8("000001.PNG")};
    takeLog();
    nodesLeft = 0;
    QVERIFY(!store.setBookmark(&bookmark, 0));
    COMPARE_BYTES(loggedText(),
                  QByteArray("3 [VLMC_BookmarksSetting::setBookmark]\n") + kFail
                      + "1 [VLMC_BookmarksSetting::setBookmark] Failed to new VLMC_XMLNode.\n");
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_NoMemory::stores_goOnWithoutMemory_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::newRow("bookmarks") << Operation(useBookmarks);
    QTest::newRow("history") << Operation(useHistory);
    QTest::newRow("credentials") << Operation(useCredentials);
    QTest::newRow("cookies") << Operation(useCookies);
    QTest::newRow("fonts") << Operation(useFonts);
    QTest::newRow("common preferences") << Operation(useCommonPreferences);
    QTest::newRow("user preferences") << Operation(useUserPreferences);
    QTest::newRow("thumbnails") << Operation(packThumbnails);
}

// Memory ends at every node in turn, and once not at all.
void tst_NoMemory::stores_goOnWithoutMemory()
{
    QFETCH(Operation, operation);
    TestDirectory directory;
    writeFile(directory.file("000001.PNG"), "no image");
    bool failed = true;
    int nodes = 0;
    for (; failed; ++nodes) {
        nodesLeft = nodes;
        operation(directory.path());
        nodesLeft = -1;
        failed = loggedText().contains(kFail);
        runDeferredDeletes();
    }
    QVERIFY(nodes > 2);
}

QTEST_GUILESS_MAIN(tst_NoMemory)
#include "tst_NoMemory.moc"
