#include "core/VLMC_XMLSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"
#include "tests/support/SmallStack.h"
#include "tests/support/WhenDestroyed.h"

#include <QtCore/QPointer>
#include <QtCore/QThread>

typedef void (*ChangeOfNode)(VLMC_XMLNode *root, VLMC_XMLNode *b);
Q_DECLARE_METATYPE(ChangeOfNode)

class tst_VLMC_XMLSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void constructor_hasNoDocument();
    void destructor_releasesTheRootLater();
    void destructor_logsWithoutRoot();
    void load_buildsTheTree();
    void load_refusesEmptyPath_data();
    void load_refusesEmptyPath();
    void load_destroysBeforeItLogs();
    void load_ofNoFileGivesAnEmptyRoot_data();
    void load_ofNoFileGivesAnEmptyRoot();
    void load_needsNoStackForDepth();
    void save_writesTheTree();
    void save_refusesEmptyPath_data();
    void save_refusesEmptyPath();
    void save_withoutRootLeavesTheFile();
    void save_logsAFailedOpen();
    void save_logsANullEntry();
    void save_needsNoStackForDepth();
    void createXMLRootNode_startsAnEmptyDocument();
    void createXMLRootNode_releasesTheOldOneLater();
    void getXMLNodeCnt_countsTheRootsChildren();
    void getChildNode_givesTheFirst();
    void getGrandchildNode_looksIntoTheFirstChildOnly();
    void addXMLChild_attaches_data();
    void addXMLChild_attaches();
    void addXMLChild_withoutParentGivesALooseNode();
    void addXMLChild_addsBesideTheSameName();
    void setElement_addsAMissingElement_data();
    void setElement_addsAMissingElement();
    void setElement_updatesTextAndTypeOnly();
    void setElement_refusesNullParent();
    void setElement_callsNoOverride();
    void setElement_needsNoDocument();
    void count_goesByIdentifier_data();
    void count_goesByIdentifier();
    void count_asksTheGivenAttribute();
    void count_isThatOfTheNumberedOnes();
    void setIDforChildren_numbersByPosition();
    void setIDforChildren_stopsAt999_data();
    void setIDforChildren_stopsAt999();
    void setIDforChildren_doesNotBindTheChildren_data();
    void setIDforChildren_doesNotBindTheChildren();
    void setIDforChildren_reportsNullEntries();
    void deleteXMLNodeByID_releasesTheFirstMatchLater();
    void deleteXMLNodeByID_leavesTheOtherNumbers_data();
    void deleteXMLNodeByID_leavesTheOtherNumbers();
    void operations_createNoRoot();
    void deleteAllXMLNode_dropsTheWholeDocument();
    void deleteAllSetting_keepsTheRoot();
    void deleteAllSetting_reportsNullEntries();
    void deleteAllSetting_leavesNodesToWhoDestroysThem();
    void deleteAllSetting_leavesNodesToTheirThread();
    void deleteAllSetting_ofAnotherDocumentsChild();
};

namespace
{
QString idName() { return utf8("id"); }

// "r" with these children, each as Nodes.h describes a tree.
VLMC_XMLNode *fill(VLMC_XMLSetting &store, const char *children)
{
    VLMC_XMLNode *const root = store.createXMLRootNode();
    QString name = utf8("r");
    root->setName(name);
    do {
        readTree(children, root);
    } while (*children++ == ' ');
    return root;
}

QXmlStreamAttributes attribute(const char *name, const char *value)
{
    QXmlStreamAttributes attributes;
    attributes.append(utf8(name), utf8(value));
    return attributes;
}

VLMC_XMLNode *const noNode = nullptr;

const char kSaved[] = "3 [VLMC_XMLSetting::save] start\n3 [VLMC_XMLSetting::saveBookmark] end\n";
} // namespace

void tst_VLMC_XMLSetting::constructor_hasNoDocument()
{
    VLMC_XMLSetting store;
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.getXMLNodeCnt(), 0);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::destructor_releasesTheRootLater()
{
    QPointer<VLMC_XMLNode> root;
    QPointer<VLMC_XMLNode> child;
    {
        VLMC_XMLSetting store;
        root = fill(store, "a");
        child = root->getXMLNodeChildren().first();
        takeLog();
    }
    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_XMLSetting::~VLMC_XMLSetting] " + hexAddress(root.data()) + "\n");
    QVERIFY(root);
    QVERIFY(child);
    runDeferredDeletes();
    QVERIFY(!root);
    QVERIFY(!child);
}

void tst_VLMC_XMLSetting::destructor_logsWithoutRoot()
{
    {
        VLMC_XMLSetting store;
    }
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::~VLMC_XMLSetting] 0x0\n");
}

void tst_VLMC_XMLSetting::load_buildsTheTree()
{
    const TestDirectory directory;
    writeFile(directory.file("a.xml"), "<r x=\"1\"><a id=\"5\">1</a><b><![CDATA[2]]></b></r>");
    QString path = directory.file("a.xml");
    VLMC_XMLSetting store;
    store.load(path);
    QCOMPARE(described(store.getXMLRootNode()), QByteArray("r{x=1}[a{id=5}0'1' b1'2']"));
    QCOMPARE(path, directory.file("a.xml"));
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n");
}

void tst_VLMC_XMLSetting::load_refusesEmptyPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << utf8("");
}

void tst_VLMC_XMLSetting::load_refusesEmptyPath()
{
    QFETCH(QString, path);
    VLMC_XMLSetting store;
    store.load(path);
    COMPARE_BYTES(loggedText(), "2 [VLMC_XMLSetting::load] Path is NULL or empty.\n");
    QVERIFY(!store.getXMLRootNode());

    VLMC_XMLNode *const root = fill(store, "a b");
    store.load(path);
    COMPARE_BYTES(loggedText(), "2 [VLMC_XMLSetting::load] Path is NULL or empty.\n");
    QCOMPARE(store.getXMLRootNode(), root);
    runDeferredDeletes();
    QCOMPARE(described(root), QByteArray("r[a b]"));
}

void tst_VLMC_XMLSetting::load_destroysBeforeItLogs()
{
    const TestDirectory directory;
    QString path = directory.file("missing.xml");
    VLMC_XMLSetting store;
    QByteArray loggedBefore = "not destroyed";
    whenDestroyed(fill(store, "a"), [&loggedBefore] { loggedBefore = loggedText(); });
    store.load(path);
    QCOMPARE(loggedBefore, QByteArray());
}

void tst_VLMC_XMLSetting::load_ofNoFileGivesAnEmptyRoot_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("missing") << QByteArray("missing.xml") << QByteArray("file not exist!");
    // A folder exists and cannot be opened as a file, whoever runs the test.
    QTest::newRow("folder") << QByteArray() << QByteArray("file open error!");
}

void tst_VLMC_XMLSetting::load_ofNoFileGivesAnEmptyRoot()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, message);
    const TestDirectory directory;
    QString path = directory.file(name.constData());
    VLMC_XMLSetting store;
    store.load(path);
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "2 VLMC_XMLReader::read "
                                    + message
                                    + "\n"
                                      "3 [VLMC_XMLSetting::loadBookmark] end\n");
    QVERIFY(store.getXMLRootNode());
    QCOMPARE(described(store.getXMLRootNode()), QByteArray());
    QVERIFY(!exists(directory.file("missing.xml")));
}

void tst_VLMC_XMLSetting::load_needsNoStackForDepth()
{
    const int levels = 100000;
    const TestDirectory directory;
    QString path = directory.file("deep.xml");
    writeFile(path, QByteArray("<e>").repeated(levels) + QByteArray("</e>").repeated(levels));
    runOnSmallStack([&] {
        VLMC_XMLSetting store;
        store.load(path);
        QCOMPARE(depthOf(store.getXMLRootNode()), levels);
        QPointer<VLMC_XMLNode> root(store.getXMLRootNode());
        store.load(path);
        QVERIFY(!root);
        QString missing = directory.file("missing.xml");
        store.load(missing);
    });
}

void tst_VLMC_XMLSetting::save_writesTheTree()
{
    const TestDirectory directory;
    QString path = directory.file("a.xml");
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b0'1 & 2'");
    addAttribute(root, "docInfo", "1.0");
    store.save(path);
    COMPARE_BYTES(readFile(path), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                  "<r docInfo=\"1.0\">\n"
                                  "    <a/>\n"
                                  "    <b>1 &amp; 2</b>\n"
                                  "</r>\n");
    QCOMPARE(path, directory.file("a.xml"));
    QCOMPARE(store.getXMLRootNode(), root);
    QCOMPARE(described(root), QByteArray("r{docInfo=1.0}[a b0'1 & 2']"));
    COMPARE_BYTES(loggedText(), kSaved);
}

void tst_VLMC_XMLSetting::save_refusesEmptyPath_data() { load_refusesEmptyPath_data(); }

void tst_VLMC_XMLSetting::save_refusesEmptyPath()
{
    QFETCH(QString, path);
    VLMC_XMLSetting store;
    store.save(path);
    COMPARE_BYTES(loggedText(), "2 [VLMC_XMLSetting::save] Path is NULL or empty.\n");
    fill(store, "a");
    store.save(path);
    COMPARE_BYTES(loggedText(), "2 [VLMC_XMLSetting::save] Path is NULL or empty.\n");
}

void tst_VLMC_XMLSetting::save_withoutRootLeavesTheFile()
{
    const TestDirectory directory;
    QString path = directory.file("a.xml");
    VLMC_XMLSetting store;
    store.save(path);
    QVERIFY(!exists(path));
    COMPARE_BYTES(loggedText(), kSaved);
    writeFile(path, "before");
    store.save(path);
    COMPARE_BYTES(readFile(path), "before");
}

void tst_VLMC_XMLSetting::save_logsAFailedOpen()
{
    const TestDirectory directory;
    QString path = directory.file("missing/a.xml");
    VLMC_XMLSetting store;
    fill(store, "a");
    store.save(path);
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::save] start\n"
                                "2 VLMC_XMLWriter::write file open error!\n"
                                "3 [VLMC_XMLSetting::saveBookmark] end\n");
    QVERIFY(!exists(directory.file("missing")));
}

void tst_VLMC_XMLSetting::save_logsANullEntry()
{
    const TestDirectory directory;
    QString path = directory.file("a.xml");
    VLMC_XMLSetting store;
    fill(store, "a null");
    store.save(path);
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::save] start\n"
                                "1 [VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.\n"
                                "3 [VLMC_XMLSetting::saveBookmark] end\n");
}

void tst_VLMC_XMLSetting::save_needsNoStackForDepth()
{
    const TestDirectory directory;
    QString path = directory.file("deep.xml");
    runOnSmallStack([&] {
        VLMC_XMLSetting store;
        VLMC_XMLNode *const root = store.createXMLRootNode();
        QString name = utf8("r");
        root->setName(name);
        char place = 0;
        root->addXMLNode(newChain(1999), place);
        store.save(path);
        VLMC_XMLSetting again;
        again.load(path);
        QCOMPARE(depthOf(again.getXMLRootNode()), 2000);
    });
}

void tst_VLMC_XMLSetting::createXMLRootNode_startsAnEmptyDocument()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    QVERIFY(root);
    QCOMPARE(store.getXMLRootNode(), root);
    QCOMPARE(described(root), QByteArray());
    QVERIFY(!root->getXMLNodeParent());
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::createXMLRootNode_releasesTheOldOneLater()
{
    VLMC_XMLSetting store;
    QPointer<VLMC_XMLNode> before(fill(store, "a"));
    VLMC_XMLNode *const root = store.createXMLRootNode();
    QVERIFY(before);
    QVERIFY(before.data() != root);
    QCOMPARE(described(before), QByteArray("r[a]"));
    QCOMPARE(described(root), QByteArray());
    runDeferredDeletes();
    QVERIFY(!before);
    QCOMPARE(store.getXMLRootNode(), root);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::getXMLNodeCnt_countsTheRootsChildren()
{
    VLMC_XMLSetting store;
    store.createXMLRootNode();
    QCOMPARE(store.getXMLNodeCnt(), 0);
    fill(store, "a[inner] b c null");
    QCOMPARE(store.getXMLNodeCnt(), 4);
}

void tst_VLMC_XMLSetting::getChildNode_givesTheFirst()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "b a a");
    QCOMPARE(store.getChildNode(utf8("a")), root->getXMLNodeChildren().at(1));
    QCOMPARE(store.getChildNode(utf8("x")), noNode);
    QCOMPARE(store.getChildNode(utf8("A")), noNode);
    QCOMPARE(store.getChildNode(utf8("r")), noNode);
}

void tst_VLMC_XMLSetting::getGrandchildNode_looksIntoTheFirstChildOnly()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const first = fill(store, "b a[x x] a[y]")->getXMLNodeChildren().at(1);
    QCOMPARE(store.getGrandchildNode(utf8("a"), utf8("x")), first->getXMLNodeChildren().first());
    QCOMPARE(store.getGrandchildNode(utf8("a"), utf8("y")), noNode);
    QCOMPARE(store.getGrandchildNode(utf8("b"), utf8("x")), noNode);
    QCOMPARE(store.getGrandchildNode(utf8("none"), utf8("x")), noNode);
}

void tst_VLMC_XMLSetting::addXMLChild_attaches_data()
{
    QTest::addColumn<int>("prepend");
    QTest::addColumn<int>("textType");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("end, plain") << 0 << 0 << QByteArray("r[a b new{x=1}0'text']");
    QTest::newRow("front, CDATA") << 1 << 1 << QByteArray("r[new{x=1}1'text' a b]");
    QTest::newRow("2: front, type 5") << 2 << 5 << QByteArray("r[new{x=1}5'text' a b]");
}

void tst_VLMC_XMLSetting::addXMLChild_attaches()
{
    QFETCH(int, prepend);
    QFETCH(int, textType);
    QFETCH(QByteArray, tree);
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b");
    QString name = utf8("new");
    QString text = utf8("text");
    char type = char(textType);
    QXmlStreamAttributes attributes = attribute("x", "1");

    VLMC_XMLNode *const node = store.addXMLChild(root, name, text, type, attributes, char(prepend));

    // The node has copies.
    name.clear();
    text.clear();
    type = 9;
    attributes.clear();
    QCOMPARE(described(root), tree);
    QCOMPARE(node->getXMLNodeParent(), root);
    QCOMPARE(node->getName(), utf8("new"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::addXMLChild_withoutParentGivesALooseNode()
{
    VLMC_XMLSetting store;
    QString name = utf8("new");
    QString text = utf8("text");
    char type = 0;
    QXmlStreamAttributes none;
    const QScopedPointer<VLMC_XMLNode> node(store.addXMLChild(nullptr, name, text, type, none, 1));
    QCOMPARE(described(node.data()), QByteArray("new0'text'"));
    QVERIFY(!node->getXMLNodeParent());
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::addXMLChild_addsBesideTheSameName()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a");
    QString name = utf8("a");
    QString text = utf8("2");
    char type = 0;
    QXmlStreamAttributes none;
    store.addXMLChild(root, name, text, type, none, 0);
    QCOMPARE(described(root), QByteArray("r[a a0'2']"));
}

void tst_VLMC_XMLSetting::setElement_addsAMissingElement_data() { addXMLChild_attaches_data(); }

void tst_VLMC_XMLSetting::setElement_addsAMissingElement()
{
    QFETCH(int, prepend);
    QFETCH(int, textType);
    QFETCH(QByteArray, tree);
    VLMC_XMLSetting store;
    // Only the parent's own children count.
    VLMC_XMLNode *const root = fill(store, "a[new] b");

    VLMC_XMLNode *const node = store.setElement(root, utf8("new"), utf8("text"),
                                                attribute("x", "1"), char(textType), char(prepend));

    QCOMPARE(described(root), QByteArray(tree).replace("a b", "a[new] b"));
    QCOMPARE(node->getXMLNodeParent(), root);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::setElement_updatesTextAndTypeOnly()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b{id=007}[inner] b c");

    VLMC_XMLNode *const node =
        store.setElement(root, utf8("b"), utf8("text"), attribute("x", "1"), 1, 1);

    QCOMPARE(node, root->getXMLNodeChildren().at(1));
    QCOMPARE(described(root), QByteArray("r[a b{id=007}1'text'[inner] b c]"));
    store.setElement(root, utf8("b"), QString(), QXmlStreamAttributes(), 0, 0);
    QCOMPARE(described(root), QByteArray("r[a b{id=007}[inner] b c]"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::setElement_refusesNullParent()
{
    VLMC_XMLSetting store;
    fill(store, "a");
    QCOMPARE(store.setElement(nullptr, utf8("a"), utf8("text"), QXmlStreamAttributes(), 0, 0),
             noNode);
    QCOMPARE(described(store.getXMLRootNode()), QByteArray("r[a]"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::setElement_callsNoOverride()
{
    struct Overriding : VLMC_XMLSetting {
        VLMC_XMLNode *addXMLChild(VLMC_XMLNode *, QString &, QString &, char &,
                                  QXmlStreamAttributes &, char) override
        {
            called = true;
            return nullptr;
        }
        bool called = false;
    };
    Overriding store;
    VLMC_XMLNode *const root = fill(store, "a");
    QVERIFY(store.setElement(root, utf8("new"), utf8("1"), QXmlStreamAttributes(), 0, 0));
    QVERIFY(!store.called);
    QCOMPARE(described(root), QByteArray("r[a new0'1']"));
}

void tst_VLMC_XMLSetting::setElement_needsNoDocument()
{
    VLMC_XMLSetting store;
    const QScopedPointer<VLMC_XMLNode> parent(newNode(nullptr, "p"));
    store.setElement(parent.data(), utf8("a"), utf8("1"), QXmlStreamAttributes(), 0, 0);
    QCOMPARE(described(parent.data()), QByteArray("p[a0'1']"));
    QVERIFY(!store.getXMLRootNode());
}

void tst_VLMC_XMLSetting::count_goesByIdentifier_data()
{
    QTest::addColumn<QByteArray>("children");
    QTest::addColumn<int>("count");
    QTest::newRow("as numbered") << QByteArray("a{id=000} b{id=001} a{id=002}") << 2;
    QTest::newRow("none of this name") << QByteArray("b{id=000} b{id=001}") << 0;
    QTest::newRow("in any order") << QByteArray("a{id=2} b{id=0} a{id=1}") << 2;
    QTest::newRow("a gap puts the last out of range")
        << QByteArray("a{id=000} a{id=001} a{id=003}") << 2;
    QTest::newRow("count less one is in range") << QByteArray("a{id=002} b b") << 1;
    QTest::newRow("count is out of range") << QByteArray("a{id=003} b b") << 0;
    QTest::newRow("a duplicate counts once") << QByteArray("a{id=000} a{id=000} a{id=001}") << 2;
    QTest::newRow("the first of a duplicate decides")
        << QByteArray("b{id=000} a{id=000} a{id=1}") << 1;
    QTest::newRow("the first of a duplicate decides, the other way")
        << QByteArray("a{id=000} b{id=000} a{id=1}") << 2;
    QTest::newRow("no identifier") << QByteArray("a a{id=001}") << 1;
    QTest::newRow("empty identifier") << QByteArray("a{id=} a{id=001}") << 1;
    QTest::newRow("not a number") << QByteArray("a{id=abc} a{id=1x} a{id=0x1}") << 0;
    QTest::newRow("signs") << QByteArray("a{id=+1} a{id=-0} b{id=x}") << 2;
    QTest::newRow("blanks around") << QByteArray("a{id= 1 } a{id=0 } b{id=x}") << 2;
    QTest::newRow("blanks within") << QByteArray("a{id=0 1} b{id=x}") << 0;
    QTest::newRow("negative") << QByteArray("a{id=-1} a{id=-2} a{id=0}") << 1;
    QTest::newRow("huge") << QByteArray("a{id=2147483647} a{id=2147483648} a{id=99999999999}") << 0;
    QTest::newRow("many leading zeros") << QByteArray("a{id=00000000000001} b{id=x}") << 1;
    QTest::newRow("1, 01 and 001 are one") << QByteArray("a{id=1} a{id=01} a{id=001}") << 1;
    QTest::newRow("null entries lengthen the range") << QByteArray("a{id=2} null null") << 1;
    QTest::newRow("another case of name") << QByteArray("A{id=0} a{id=1}") << 1;
}

void tst_VLMC_XMLSetting::count_goesByIdentifier()
{
    QFETCH(QByteArray, children);
    QFETCH(int, count);
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, children.constData());
    QString attributeName = idName();
    QString name = utf8("a");

    QCOMPARE(store.getXMLRootNodeChildCntByName(attributeName, name), count);

    QCOMPARE(described(root), "r[" + children + ']');
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::count_asksTheGivenAttribute()
{
    VLMC_XMLSetting store;
    fill(store, "a{id=0} a{no=1} a{no=2}");
    QString name = utf8("a");
    QString attributeName = idName();
    QCOMPARE(store.getXMLRootNodeChildCntByName(attributeName, name), 1);
    attributeName = utf8("no");
    QCOMPARE(store.getXMLRootNodeChildCntByName(attributeName, name), 2);
}

void tst_VLMC_XMLSetting::count_isThatOfTheNumberedOnes()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    for (int i = 0; i < 1000; ++i) {
        newNode(root, i % 3 ? "a" : "b");
    }
    QString attributeName = idName();
    QString name = utf8("b");
    store.setIDforChildren(attributeName);
    // Positions 0, 3, .. 999, of which the last goes without a number.
    QCOMPARE(store.getXMLRootNodeChildCntByName(attributeName, name), 333);
}

void tst_VLMC_XMLSetting::setIDforChildren_numbersByPosition()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a{id=9} b{x=1}{id=9} c[inner{x=1}]");
    addAttribute(root, "docInfo", "1.0");
    QString attributeName = idName();

    store.setIDforChildren(attributeName);

    QCOMPARE(described(root),
             QByteArray("r{docInfo=1.0}[a{id=000} b{id=001} c{id=002}[inner{x=1}]]"));
    QCOMPARE(loggedText(), QByteArray());
    attributeName = utf8("no");
    store.setIDforChildren(attributeName);
    QCOMPARE(described(root),
             QByteArray("r{docInfo=1.0}[a{no=000} b{no=001} c{no=002}[inner{x=1}]]"));
}

void tst_VLMC_XMLSetting::setIDforChildren_stopsAt999_data()
{
    QTest::addColumn<int>("children");
    QTest::newRow("998") << 998;
    QTest::newRow("999") << 999;
    QTest::newRow("1000") << 1000;
    QTest::newRow("1005") << 1005;
}

void tst_VLMC_XMLSetting::setIDforChildren_stopsAt999()
{
    QFETCH(int, children);
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    for (int i = 0; i < children; ++i) {
        addAttribute(newNode(root, "a"), "old", "1");
    }
    QString attributeName = idName();

    store.setIDforChildren(attributeName);

    for (int i = 0; i < children; ++i) {
        char numbered[32];
        snprintf(numbered, sizeof numbered, "a{id=%03d}", i);
        QCOMPARE(described(root->getXMLNodeChildren().at(i)),
                 QByteArray(i < 999 ? numbered : "a{old=1}"));
    }
}

// Whatever happens to numbered children afterwards is seen at once.
void tst_VLMC_XMLSetting::setIDforChildren_doesNotBindTheChildren_data()
{
    QTest::addColumn<ChangeOfNode>("change");
    QTest::addColumn<QByteArray>("found");
    const ChangeOfNode lend = [](VLMC_XMLNode *, VLMC_XMLNode *b) {
        b->getAttribute() = attribute("id", "7");
    };
    const ChangeOfNode set = [](VLMC_XMLNode *, VLMC_XMLNode *b) {
        QXmlStreamAttributes seven = attribute("id", "7");
        b->setAttribute(seven);
    };
    const ChangeOfNode append = [](VLMC_XMLNode *root, VLMC_XMLNode *) { newNode(root, "d"); };
    const ChangeOfNode prepend = [](VLMC_XMLNode *root, VLMC_XMLNode *) {
        char front = 1;
        root->addXMLNode(newNode(nullptr, "d"), front);
    };
    const ChangeOfNode remove = [](VLMC_XMLNode *root, VLMC_XMLNode *b) {
        root->removeXMLNode(b);
        b->deleteLater();
    };
    const ChangeOfNode move = [](VLMC_XMLNode *root, VLMC_XMLNode *b) {
        char end = 0;
        root->addXMLNode(b, end);
    };
    QTest::newRow("attributes by reference") << lend << QByteArray("a - c - b");
    QTest::newRow("attributes set") << set << QByteArray("a - c - b");
    QTest::newRow("child added at the end") << append << QByteArray("a b c - -");
    QTest::newRow("child added in front") << prepend << QByteArray("a b c - -");
    QTest::newRow("child removed") << remove << QByteArray("a - c - -");
    QTest::newRow("child moved") << move << QByteArray("a b c - -");
}

void tst_VLMC_XMLSetting::setIDforChildren_doesNotBindTheChildren()
{
    QFETCH(ChangeOfNode, change);
    QFETCH(QByteArray, found);
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b c");
    QString attributeName = idName();
    store.setIDforChildren(attributeName);
    change(root, root->getXMLNodeChildByID(1, attributeName));

    QList<QByteArray> names;
    const int ids[] = {0, 1, 2, 3, 7};
    for (const int id : ids) {
        VLMC_XMLNode *const child = root->getXMLNodeChildByID(id, attributeName);
        names.append(child ? child->getName().toUtf8() : "-");
    }
    QCOMPARE(names, found.split(' '));
}

void tst_VLMC_XMLSetting::setIDforChildren_reportsNullEntries()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "null a null b");
    QString attributeName = idName();

    store.setIDforChildren(attributeName);

    const QByteArray line =
        "1 [VLMC_XMLSetting::setIDforChildren] " + hexAddress(root) + " Why Pass??\n";
    COMPARE_BYTES(loggedText(), line + line);
    QCOMPARE(described(root), QByteArray("r[null a{id=001} null b{id=003}]"));
}

void tst_VLMC_XMLSetting::deleteXMLNodeByID_releasesTheFirstMatchLater()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b{id=1} c{id=001}");
    QPointer<VLMC_XMLNode> child(root->getXMLNodeChildren().at(1));
    QString attributeName = idName();

    store.deleteXMLNodeByID(1, attributeName);

    QCOMPARE(described(root), QByteArray("r[a c{id=001}]"));
    QVERIFY(child);
    QVERIFY(!child->getXMLNodeParent());
    runDeferredDeletes();
    QVERIFY(!child);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::deleteXMLNodeByID_leavesTheOtherNumbers_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("attributeName");
    QTest::addColumn<QByteArray>("tree");
    const QByteArray all = "r[a{id=000} b{id=001} c{id=002}]";
    QTest::newRow("a number") << 1 << idName() << QByteArray("r[a{id=000} c{id=002}]");
    QTest::newRow("no such number") << 3 << idName() << all;
    QTest::newRow("negative") << -1 << idName() << all;
    QTest::newRow("another attribute") << 1 << utf8("no") << all;
}

void tst_VLMC_XMLSetting::deleteXMLNodeByID_leavesTheOtherNumbers()
{
    QFETCH(int, id);
    QFETCH(QString, attributeName);
    QFETCH(QByteArray, tree);
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b c");
    QString numbering = idName();
    store.setIDforChildren(numbering);
    store.deleteXMLNodeByID(id, attributeName);
    QCOMPARE(described(root), tree);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLSetting::operations_createNoRoot()
{
    VLMC_XMLSetting store;
    QString attributeName = idName();
    QString name = utf8("a");
    QCOMPARE(store.getXMLRootNodeChildCntByName(attributeName, name), 0);
    store.setIDforChildren(attributeName);
    store.deleteXMLNodeByID(0, attributeName);
    store.deleteAllXMLNode();
    store.deleteAllSetting();
    QVERIFY(!store.getXMLRootNode());
    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::deleteAllXMLNode] 0x0\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n");
}

void tst_VLMC_XMLSetting::deleteAllXMLNode_dropsTheWholeDocument()
{
    VLMC_XMLSetting store;
    QPointer<VLMC_XMLNode> before(fill(store, "a b"));
    addAttribute(before, "docInfo", "1.0");

    store.deleteAllXMLNode();

    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_XMLSetting::deleteAllXMLNode] " + hexAddress(before.data()) + "\n");
    VLMC_XMLNode *const root = store.getXMLRootNode();
    QVERIFY(root);
    QVERIFY(root != before.data());
    QCOMPARE(described(root), QByteArray());
    QVERIFY(before);
    runDeferredDeletes();
    QVERIFY(!before);
    QCOMPARE(described(store.getXMLRootNode()), QByteArray());
}

void tst_VLMC_XMLSetting::deleteAllSetting_keepsTheRoot()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a[inner] b");
    addAttribute(root, "docInfo", "1.0");
    QPointer<VLMC_XMLNode> first(root->getXMLNodeChildren().first());
    QPointer<VLMC_XMLNode> last(root->getXMLNodeChildren().last());
    QPointer<VLMC_XMLNode> inner(first->getXMLNodeChildren().first());

    store.deleteAllSetting();

    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_XMLSetting::deleteRootChildren] " + hexAddress(root) + "\n");
    QCOMPARE(store.getXMLRootNode(), root);
    QCOMPARE(described(root), QByteArray("r{docInfo=1.0}"));
    QVERIFY(first && last && inner);
    QVERIFY(!first->getXMLNodeParent());
    QVERIFY(!last->getXMLNodeParent());
    runDeferredDeletes();
    QVERIFY(!first && !last && !inner);
}

void tst_VLMC_XMLSetting::deleteAllSetting_reportsNullEntries()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "null a b null");
    QPointer<VLMC_XMLNode> last(root->getXMLNodeChildren().at(2));

    store.deleteAllSetting();

    const QByteArray address = hexAddress(root);
    const QByteArray line = "1 [VLMC_XMLSetting::deleteRootChildren] " + address + " Why Pass??\n";
    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_XMLSetting::deleteRootChildren] " + address + "\n" + line + line);
    // Nobody removes the null entries.
    QCOMPARE(described(root), QByteArray("r[null null]"));
    runDeferredDeletes();
    QVERIFY(!last);
}

void tst_VLMC_XMLSetting::deleteAllSetting_leavesNodesToWhoDestroysThem()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = fill(store, "a b c");
    VLMC_XMLNode *const first = root->getXMLNodeChildren().at(0);
    VLMC_XMLNode *const second = root->getXMLNodeChildren().at(1);
    QPointer<VLMC_XMLNode> third(root->getXMLNodeChildren().at(2));
    // One that stands in the list twice is destroyed once.
    root->getXMLNodeChildren().append(third);

    store.deleteAllSetting();
    delete first;
    second->deleteLater();

    QVERIFY(third);
    runDeferredDeletes();
    QVERIFY(!third);
}

void tst_VLMC_XMLSetting::deleteAllSetting_leavesNodesToTheirThread()
{
    VLMC_XMLSetting store;
    QThread thread;
    QPointer<VLMC_XMLNode> child(newNode(store.createXMLRootNode(), "a"));
    child->moveToThread(&thread);

    store.deleteAllSetting();
    runDeferredDeletes();

    QVERIFY(child);
    // A thread runs the deferred deletions of its objects before it ends.
    QObject::connect(&thread, SIGNAL(started()), &thread, SLOT(quit()), Qt::DirectConnection);
    thread.start();
    QVERIFY(thread.wait());
    QVERIFY(!child);
}

// A child that another document numbered and a caller put here as well: it is released, and what
// becomes of its number is still seen there.
void tst_VLMC_XMLSetting::deleteAllSetting_ofAnotherDocumentsChild()
{
    VLMC_XMLSetting owner;
    VLMC_XMLNode *const root = fill(owner, "a b");
    QString attributeName = idName();
    QString name = utf8("b");
    owner.setIDforChildren(attributeName);
    QPointer<VLMC_XMLNode> shared(root->getXMLNodeChildByName(name));
    VLMC_XMLSetting store;
    fill(store, "c")->getXMLNodeChildren().append(shared);

    store.deleteAllSetting();

    QVERIFY(shared && !shared->getXMLNodeParent());
    QXmlStreamAttributes seven = attribute("id", "7");
    shared->setAttribute(seven);
    QVERIFY(!root->getXMLNodeChildByID(1, attributeName));
    QCOMPARE(root->getXMLNodeChildByID(7, attributeName), shared.data());
    root->removeXMLNode(shared);
    runDeferredDeletes();
    QVERIFY(!shared);
}

QTEST_GUILESS_MAIN(tst_VLMC_XMLSetting)
#include "tst_VLMC_XMLSetting.moc"
