// The binary interface: what a program compiled against the headers relies on without naming it.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLSetting.h"
#include "core/VLMC_XMLWriter.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/Nodes.h"

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <type_traits>

class tst_Layout : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void xmlSetting_slotsStandInOrder();
    void xmlSetting_hasEightSlots();
    void xmlSetting_rootFollowsTheTable();
    void xmlSetting_destructorIsNotVirtual();
    void xmlNode_fieldsStandInOrder();
    void xmlNode_addsNoSlot();
    void readerAndWriter_addNoFields();
    void records_fieldsStandInOrder();
    void stores_addTheirFieldsBehindTheRoot();
    void commonPreferences_fieldsStandInOrder();
    void userPreferences_fieldsStandInOrder();
    void stores_addNoSlot_data();
    void stores_addNoSlot();
};

namespace
{
// Tells which operation was called, and with what.
class Recording : public VLMC_XMLSetting
{
public:
    void load(QString &path) override { called = "load " + path.toUtf8(); }
    void save(QString &path) override { called = "save " + path.toUtf8(); }
    int getXMLRootNodeChildCntByName(QString &attributeName, QString &name) override
    {
        called = "getXMLRootNodeChildCntByName " + attributeName.toUtf8() + ' ' + name.toUtf8();
        return 42;
    }
    void setIDforChildren(QString &attributeName) override
    {
        called = "setIDforChildren " + attributeName.toUtf8();
    }
    void deleteXMLNodeByID(int id, QString &attributeName) override
    {
        called = "deleteXMLNodeByID " + QByteArray::number(id) + ' ' + attributeName.toUtf8();
    }
    void deleteAllXMLNode() override { called = "deleteAllXMLNode"; }
    void deleteAllSetting() override { called = "deleteAllSetting"; }
    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text, char &textType,
                              QXmlStreamAttributes &attributes, char prepend) override
    {
        called = "addXMLChild " + name.toUtf8() + ' ' + text.toUtf8() + ' '
                 + QByteArray::number(int(textType)) + ' '
                 + QByteArray::number(int(attributes.size())) + ' '
                 + QByteArray::number(int(prepend));
        return parent;
    }
    virtual void firstOfItsOwn() { called = "firstOfItsOwn"; }

    static size_t rootOffset(Recording &store)
    {
        return size_t(reinterpret_cast<char *>(&store.root)
                      - reinterpret_cast<char *>(static_cast<VLMC_XMLSetting *>(&store)));
    }

    QByteArray called;
};

// The function in a slot of an object's table of virtual operations.
template <typename Function>
Function slot(void *object, int index)
{
    void **const table = *static_cast<void ***>(object);
    Function function;
    memcpy(&function, &table[index], sizeof function);
    return function;
}

// The size of a class's table with its two entries before the first slot; 0 when not exported.
size_t tableBytes(const char *symbol)
{
    void *const address = dlsym(RTLD_DEFAULT, symbol);
    Dl_info info;
    void *entry = nullptr;
    if (!address || !dladdr1(address, &info, &entry, RTLD_DL_SYMENT) || !entry) {
        return 0;
    }
    return size_t(static_cast<const ElfW(Sym) *>(entry)->st_size);
}

size_t offsetIn(const void *object, const void *field)
{
    return size_t(static_cast<const char *>(field) - static_cast<const char *>(object));
}

size_t alignedBehind(size_t end, size_t alignment)
{
    return (end + alignment - 1) / alignment * alignment;
}

// What stands in an object at this offset.
template <typename Value>
Value valueAt(const void *object, size_t offset)
{
    Value value;
    memcpy(&value, static_cast<const char *>(object) + offset, sizeof value);
    return value;
}
} // namespace

void tst_Layout::xmlSetting_slotsStandInOrder()
{
    typedef void (*WithText)(void *, QString &);
    typedef int (*WithTwoTexts)(void *, QString &, QString &);
    typedef void (*WithIdAndText)(void *, int, QString &);
    typedef void (*Plain)(void *);
    typedef VLMC_XMLNode *(*Adding)(void *, VLMC_XMLNode *, QString &, QString &, char &,
                                    QXmlStreamAttributes &, char);
    Recording store;
    QString first = utf8("first");
    QString second = utf8("second");
    char textType = 3;
    QXmlStreamAttributes attributes;
    attributes.append(utf8("a"), utf8("1"));
    const QScopedPointer<VLMC_XMLNode> parent(newNode(nullptr, "p"));

    slot<WithText>(&store, 0)(&store, first);
    QCOMPARE(store.called, QByteArray("load first"));
    slot<WithText>(&store, 1)(&store, first);
    QCOMPARE(store.called, QByteArray("save first"));
    QCOMPARE(slot<WithTwoTexts>(&store, 2)(&store, first, second), 42);
    QCOMPARE(store.called, QByteArray("getXMLRootNodeChildCntByName first second"));
    slot<WithText>(&store, 3)(&store, first);
    QCOMPARE(store.called, QByteArray("setIDforChildren first"));
    slot<WithIdAndText>(&store, 4)(&store, 17, first);
    QCOMPARE(store.called, QByteArray("deleteXMLNodeByID 17 first"));
    slot<Plain>(&store, 5)(&store);
    QCOMPARE(store.called, QByteArray("deleteAllXMLNode"));
    slot<Plain>(&store, 6)(&store);
    QCOMPARE(store.called, QByteArray("deleteAllSetting"));
    QCOMPARE(slot<Adding>(&store, 7)(&store, parent.data(), first, second, textType, attributes, 5),
             parent.data());
    QCOMPARE(store.called, QByteArray("addXMLChild first second 3 1 5"));
}

// A derived class's first own operation stands right behind them.
void tst_Layout::xmlSetting_hasEightSlots()
{
    typedef void (*Plain)(void *);
    Recording store;
    slot<Plain>(&store, 8)(&store);
    QCOMPARE(store.called, QByteArray("firstOfItsOwn"));
    QCOMPARE(tableBytes("_ZTV15VLMC_XMLSetting"), (2 + 8) * sizeof(void *));
}

void tst_Layout::xmlSetting_rootFollowsTheTable()
{
    Recording store;
    QCOMPARE(Recording::rootOffset(store), sizeof(void *));
    QCOMPARE(sizeof(VLMC_XMLSetting), 2 * sizeof(void *));
    QVERIFY(!valueAt<VLMC_XMLNode *>(&store, sizeof(void *)));
}

void tst_Layout::xmlSetting_destructorIsNotVirtual()
{
    QVERIFY(std::is_polymorphic<VLMC_XMLSetting>::value);
    QVERIFY(!std::has_virtual_destructor<VLMC_XMLSetting>::value);
}

void tst_Layout::xmlNode_fieldsStandInOrder()
{
    const QScopedPointer<VLMC_XMLNode> parent(newNode(nullptr, "p"));
    VLMC_XMLNode *const node = newNode(parent.data(), "n");
    node->setTextType(42);
    const char *const bytes = reinterpret_cast<const char *>(node);

    const size_t textType = sizeof(QObject);
    QCOMPARE(int(bytes[textType]), 42);

    const size_t parentField = alignedBehind(textType + 1, alignof(VLMC_XMLNode *));
    VLMC_XMLNode *stored = nullptr;
    memcpy(&stored, bytes + parentField, sizeof stored);
    QCOMPARE(stored, parent.data());

    const size_t children = parentField + sizeof stored;
    QCOMPARE(offsetIn(node, &node->getXMLNodeChildren()), children);
    const size_t attributes = children + sizeof(QList<VLMC_XMLNode *>);
    QCOMPARE(offsetIn(node, &node->getAttribute()), attributes);
    const size_t name = attributes + sizeof(QXmlStreamAttributes);
    QCOMPARE(offsetIn(node, &node->getName()), name);
    QCOMPARE(offsetIn(node, &node->getText()), name + sizeof(QString));
    QCOMPARE(sizeof(VLMC_XMLNode), name + 2 * sizeof(QString));
}

void tst_Layout::xmlNode_addsNoSlot()
{
    QVERIFY(std::has_virtual_destructor<VLMC_XMLNode>::value);
    QVERIFY(tableBytes("_ZTV12VLMC_XMLNode") != 0);
    QCOMPARE(tableBytes("_ZTV12VLMC_XMLNode"), tableBytes("_ZTV7QObject"));
}

void tst_Layout::readerAndWriter_addNoFields()
{
    QCOMPARE(sizeof(VLMC_XMLReader), sizeof(QXmlStreamReader));
    QCOMPARE(sizeof(VLMC_XMLWriter), sizeof(QXmlStreamWriter));
    QVERIFY(!std::is_polymorphic<VLMC_XMLReader>::value);
    QVERIFY(!std::is_polymorphic<VLMC_XMLWriter>::value);
}

void tst_Layout::records_fieldsStandInOrder()
{
    const size_t text = sizeof(QString);
    QCOMPARE(offsetof(VLMS_Bookmark, title), size_t(0));
    QCOMPARE(offsetof(VLMS_Bookmark, url), text);
    QCOMPARE(offsetof(VLMS_Bookmark, thumbnailPath), 2 * text);
    QCOMPARE(sizeof(VLMS_Bookmark), 3 * text);

    QCOMPARE(offsetof(VLMS_History, title), size_t(0));
    QCOMPARE(offsetof(VLMS_History, url), text);
    QCOMPARE(offsetof(VLMS_History, dateTime), 2 * text);
    QCOMPARE(sizeof(VLMS_History), 2 * text + sizeof(QDateTime));

    QCOMPARE(offsetof(VLMS_CookieInfo, website), size_t(0));
    QCOMPARE(offsetof(VLMS_CookieInfo, name), text);
    QCOMPARE(offsetof(VLMS_CookieInfo, path), 2 * text);
    QCOMPARE(offsetof(VLMS_CookieInfo, secure), 3 * text);
    QCOMPARE(offsetof(VLMS_CookieInfo, expires), 4 * text);
    QCOMPARE(offsetof(VLMS_CookieInfo, contents), 5 * text);
    QCOMPARE(sizeof(VLMS_CookieInfo), 6 * text);

    QCOMPARE(offsetof(VLMS_AuthInfo, hostName), size_t(0));
    QCOMPARE(offsetof(VLMS_AuthInfo, portNum), text);
    QCOMPARE(offsetof(VLMS_AuthInfo, authType), 2 * text);
    QCOMPARE(sizeof(VLMS_AuthInfo::authType), size_t(1));
    const size_t user = alignedBehind(2 * text + 1, alignof(QByteArray));
    QCOMPARE(offsetof(VLMS_AuthInfo, user), user);
    QCOMPARE(offsetof(VLMS_AuthInfo, passwd), user + sizeof(QByteArray));
    QCOMPARE(sizeof(VLMS_AuthInfo), user + 2 * sizeof(QByteArray));
}

void tst_Layout::stores_addTheirFieldsBehindTheRoot()
{
    const size_t withMax = alignedBehind(sizeof(VLMC_XMLSetting) + 4, alignof(void *));
    QCOMPARE(sizeof(VLMC_FontListSetting), sizeof(VLMC_XMLSetting));
    QCOMPARE(sizeof(VLMC_ThumbnailConverter), sizeof(VLMC_XMLSetting));
    QCOMPARE(sizeof(VLMC_BookmarksSetting), withMax);
    QCOMPARE(sizeof(VLMC_HistorySetting), withMax);
    QCOMPARE(sizeof(VLMC_CookieSetting), withMax);
    QCOMPARE(sizeof(VLMC_AuthSetting), withMax);

    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 0x01020304);
    QCOMPARE(valueAt<qint32>(&store, sizeof(VLMC_XMLSetting)), 0x01020304);
}

void tst_Layout::commonPreferences_fieldsStandInOrder()
{
    const size_t keyBoardType = sizeof(VLMC_XMLSetting);
    QCOMPARE(sizeof(VLMC_BrowserCommonSetting), alignedBehind(keyBoardType + 1, alignof(void *)));
    VLMC_BrowserCommonSetting store;
    QCOMPARE(int(valueAt<char>(&store, keyBoardType)), 0);
    store.setKeyBoardTypeInfo(42);
    QCOMPARE(int(valueAt<char>(&store, keyBoardType)), 42);
}

void tst_Layout::userPreferences_fieldsStandInOrder()
{
    const size_t userType = sizeof(VLMC_XMLSetting);
    const size_t cookieTiming = userType + sizeof(unsigned long);
    const size_t certificateTiming = cookieTiming + 1;
    const size_t startup = certificateTiming + 1;
    const size_t homepage = alignedBehind(startup + 1, alignof(QString));
    const size_t setting = homepage + sizeof(QString);
    const size_t settingFlag = setting + 1;
    QCOMPARE(sizeof(VLMC_BrowserUserSetting), alignedBehind(settingFlag + 1, alignof(void *)));

    VLMC_BrowserUserSetting store;
    QCOMPARE(valueAt<unsigned long>(&store, userType), 0ul);
    QCOMPARE(int(valueAt<char>(&store, setting)), 1);
    QCOMPARE(int(valueAt<char>(&store, settingFlag)), 0);
    store.setUserType(0x01020304);
    store.setBrwAdminCookieDeleteTiming(41);
    store.setBrwAdminCertificateDeleteTiming(42);
    store.setBrwAdminStartup(43);
    store.setBrwAdminHomepage(utf8("home"));
    store.setBrwAdminSetting(false);
    store.setBrwSettingflag(true);
    const char *const bytes = reinterpret_cast<const char *>(&store);
    QCOMPARE(valueAt<unsigned long>(bytes, userType), 0x01020304ul);
    QCOMPARE(int(bytes[cookieTiming]), 41);
    QCOMPARE(int(bytes[certificateTiming]), 42);
    QCOMPARE(int(bytes[startup]), 43);
    QCOMPARE(*static_cast<const QString *>(static_cast<const void *>(bytes + homepage)),
             utf8("home"));
    QCOMPARE(int(bytes[setting]), 0);
    QCOMPARE(int(bytes[settingFlag]), 1);
}

void tst_Layout::stores_addNoSlot_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("common preferences") << QByteArray("_ZTV25VLMC_BrowserCommonSetting");
    QTest::newRow("user preferences") << QByteArray("_ZTV23VLMC_BrowserUserSetting");
    QTest::newRow("bookmarks") << QByteArray("_ZTV21VLMC_BookmarksSetting");
    QTest::newRow("history") << QByteArray("_ZTV19VLMC_HistorySetting");
    QTest::newRow("thumbnails") << QByteArray("_ZTV23VLMC_ThumbnailConverter");
    QTest::newRow("cookies") << QByteArray("_ZTV18VLMC_CookieSetting");
    QTest::newRow("credentials") << QByteArray("_ZTV16VLMC_AuthSetting");
    QTest::newRow("fonts") << QByteArray("_ZTV20VLMC_FontListSetting");
}

void tst_Layout::stores_addNoSlot()
{
    QFETCH(QByteArray, table);
    QCOMPARE(tableBytes(table.constData()), tableBytes("_ZTV15VLMC_XMLSetting"));
}

QTEST_GUILESS_MAIN(tst_Layout)
#include "tst_Layout.moc"
