#include "core/VLMC_XMLNode.h"

#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"
#include "tests/support/SmallStack.h"
#include "tests/support/WhenDestroyed.h"

#include <QtCore/QPointer>

#include <climits>

class tst_VLMC_XMLNode : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();

    void constructor_givesAnEmptyNode();
    void constructor_attaches_data();
    void constructor_attaches();
    void fields_keepWhatTheyGet();
    void fields_areHandedOutByReference();
    void addXMLNode_attaches_data();
    void addXMLNode_attaches();
    void addXMLNode_takesTheChildFromItsOldParent();
    void addXMLNode_movesItsOwnChild_data();
    void addXMLNode_movesItsOwnChild();
    void addXMLNode_ignoresNull();
    void removeXMLNode_detachesWithoutDestroying();
    void removeXMLNode_clearsTheParentOfAStranger();
    void removeXMLNode_removesEveryOccurrence();
    void removeXMLNode_ignoresNull();
    void destructor_destroysAllDescendants();
    void destructor_detachesFromTheParent();
    void destructor_destroysChildrenBeforeParentsInOrder();
    void destructor_skipsNullEntries();
    void destructor_destroysAChildWithoutParentPointer();
    void destructor_leavesDetachedNodesAlone();
    void destructor_toleratesPendingDeletions();
    void destructor_needsNoStackForDepth();
    void setAttribute_replacesAll();
    void setAttribute_copies();
    void setAttribute_ofAnEmptySetRemovesAll();
    void isAttribute_asksForNameAndValue_data();
    void isAttribute_asksForNameAndValue();
    void isAttribute_asksTheFirstOfTwo();
    void getChildByName_finds_data();
    void getChildByName_finds();
    void getChildByName_staysAtTheMatch();
    void getXMLNodeChildByName_givesTheFirst();
    void getXMLNodeChildrenByName_givesAllInOrder();
    void searches_skipNullEntries();
    void getXMLNodeChildByID_readsNumbers_data();
    void getXMLNodeChildByID_readsNumbers();
    void getXMLNodeChildByID_givesTheFirst();
    void getXMLNodeChildByID_asksTheGivenAttribute();
    void getXMLNodeChildByID_asksTheFirstOfTwo();
    void getXMLNodeChildByID_givesNullWithoutChildren();
    void objectTree_playsNoPart();
};

// The class logs nothing, whatever it is given.
void tst_VLMC_XMLNode::cleanup()
{
    runDeferredDeletes();
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLNode::constructor_givesAnEmptyNode()
{
    QScopedPointer<VLMC_XMLNode> node(new VLMC_XMLNode(nullptr, 0));
    QVERIFY(!node->getXMLNodeParent());
    QVERIFY(node->getXMLNodeChildren().isEmpty());
    QVERIFY(node->getAttribute().isEmpty());
    QVERIFY(node->getName().isEmpty() && !node->getName().isNull());
    QVERIFY(node->getText().isEmpty() && !node->getText().isNull());
    QCOMPARE(int(node->getTextType()), 0);
}

void tst_VLMC_XMLNode::constructor_attaches_data()
{
    QTest::addColumn<int>("prepend");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("0: behind the others") << 0 << QByteArray("r[a b new]");
    QTest::newRow("1: before the others") << 1 << QByteArray("r[new a b]");
    QTest::newRow("2: before the others") << 2 << QByteArray("r[new a b]");
    QTest::newRow("-1: before the others") << -1 << QByteArray("r[new a b]");
}

void tst_VLMC_XMLNode::constructor_attaches()
{
    QFETCH(int, prepend);
    QFETCH(QByteArray, tree);
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    newNode(root.data(), "b");

    VLMC_XMLNode *const node = new VLMC_XMLNode(root.data(), char(prepend));
    QString name = utf8("new");
    node->setName(name);

    QCOMPARE(node->getXMLNodeParent(), root.data());
    QCOMPARE(described(root.data()), tree);
}

void tst_VLMC_XMLNode::fields_keepWhatTheyGet()
{
    QScopedPointer<VLMC_XMLNode> node(new VLMC_XMLNode(nullptr, 1));
    QString name = utf8("name");
    QString text = utf8("\xe3\x81\x82 <&>");
    node->setName(name);
    node->setText(text);
    QCOMPARE(node->getName(), utf8("name"));
    QCOMPARE(node->getText(), utf8("\xe3\x81\x82 <&>"));
    QCOMPARE(name, utf8("name"));
    QCOMPARE(text, utf8("\xe3\x81\x82 <&>"));
    for (int type = CHAR_MIN; type <= CHAR_MAX; ++type) {
        node->setTextType(char(type));
        QCOMPARE(int(node->getTextType()), type);
    }
}

void tst_VLMC_XMLNode::fields_areHandedOutByReference()
{
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "name", "text"));
    VLMC_XMLNode *const child = newNode(nullptr, "child");
    node->getName() = utf8("other");
    node->getText() += utf8("!");
    addAttribute(node.data(), "a", "1");
    node->getXMLNodeChildren().append(child);
    QCOMPARE(described(node.data()), QByteArray("other{a=1}0'text!'[child]"));
}

void tst_VLMC_XMLNode::addXMLNode_attaches_data()
{
    QTest::addColumn<int>("prepend");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("0") << 0 << QByteArray("r[a b new]");
    QTest::newRow("1") << 1 << QByteArray("r[new a b]");
    QTest::newRow("127") << 127 << QByteArray("r[new a b]");
    QTest::newRow("128 as a char") << int(char(128)) << QByteArray("r[new a b]");
}

void tst_VLMC_XMLNode::addXMLNode_attaches()
{
    QFETCH(int, prepend);
    QFETCH(QByteArray, tree);
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    newNode(root.data(), "b");
    VLMC_XMLNode *const node = newNode(nullptr, "new");
    char place = char(prepend);

    root->addXMLNode(node, place);

    QCOMPARE(described(root.data()), tree);
    QCOMPARE(node->getXMLNodeParent(), root.data());
    QCOMPARE(int(place), prepend);
}

void tst_VLMC_XMLNode::addXMLNode_takesTheChildFromItsOldParent()
{
    QScopedPointer<VLMC_XMLNode> before(newNode(nullptr, "before"));
    QScopedPointer<VLMC_XMLNode> after(newNode(nullptr, "after"));
    VLMC_XMLNode *const child = newNode(before.data(), "child");
    newNode(child, "grandchild");
    newNode(before.data(), "stays");
    char place = 0;

    after->addXMLNode(child, place);

    QCOMPARE(described(before.data()), QByteArray("before[stays]"));
    QCOMPARE(described(after.data()), QByteArray("after[child[grandchild]]"));
    QCOMPARE(child->getXMLNodeParent(), after.data());
}

void tst_VLMC_XMLNode::addXMLNode_movesItsOwnChild_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("prepend");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("first to the end") << 0 << 0 << QByteArray("r[b c a]");
    QTest::newRow("middle to the end") << 1 << 0 << QByteArray("r[a c b]");
    QTest::newRow("last to the end") << 2 << 0 << QByteArray("r[a b c]");
    QTest::newRow("first to the front") << 0 << 1 << QByteArray("r[a b c]");
    QTest::newRow("middle to the front") << 1 << 1 << QByteArray("r[b a c]");
    QTest::newRow("last to the front") << 2 << 1 << QByteArray("r[c a b]");
}

void tst_VLMC_XMLNode::addXMLNode_movesItsOwnChild()
{
    QFETCH(int, position);
    QFETCH(int, prepend);
    QFETCH(QByteArray, tree);
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    newNode(root.data(), "b");
    newNode(root.data(), "c");
    char place = char(prepend);

    root->addXMLNode(root->getXMLNodeChildren().at(position), place);

    QCOMPARE(described(root.data()), tree);
}

void tst_VLMC_XMLNode::addXMLNode_ignoresNull()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    char place = 0;
    root->addXMLNode(nullptr, place);
    place = 1;
    root->addXMLNode(nullptr, place);
    QVERIFY(root->getXMLNodeChildren().isEmpty());
}

void tst_VLMC_XMLNode::removeXMLNode_detachesWithoutDestroying()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    QPointer<VLMC_XMLNode> child(newNode(root.data(), "b"));
    newNode(child, "inner");
    newNode(root.data(), "c");

    root->removeXMLNode(child);

    QVERIFY(child);
    QVERIFY(!child->getXMLNodeParent());
    QCOMPARE(described(child), QByteArray("b[inner]"));
    QCOMPARE(described(root.data()), QByteArray("r[a c]"));
    delete child;
}

void tst_VLMC_XMLNode::removeXMLNode_clearsTheParentOfAStranger()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    QScopedPointer<VLMC_XMLNode> other(newNode(nullptr, "other"));
    VLMC_XMLNode *const child = newNode(root.data(), "child");

    other->removeXMLNode(child);

    QVERIFY(!child->getXMLNodeParent());
    QCOMPARE(described(root.data()), QByteArray("r[child]"));
    QCOMPARE(described(other.data()), QByteArray("other"));
}

void tst_VLMC_XMLNode::removeXMLNode_removesEveryOccurrence()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    QScopedPointer<VLMC_XMLNode> child(newNode(root.data(), "twice"));
    root->getXMLNodeChildren().append(child.data());
    newNode(root.data(), "a");
    root->getXMLNodeChildren().append(child.data());
    QCOMPARE(described(root.data()), QByteArray("r[twice twice a twice]"));

    root->removeXMLNode(child.data());

    QCOMPARE(described(root.data()), QByteArray("r[a]"));
    QVERIFY(!child->getXMLNodeParent());
}

void tst_VLMC_XMLNode::removeXMLNode_ignoresNull()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    root->removeXMLNode(nullptr);
    QCOMPARE(described(root.data()), QByteArray("r[a null]"));
}

void tst_VLMC_XMLNode::destructor_destroysAllDescendants()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    QList<QPointer<VLMC_XMLNode>> descendants;
    for (int i = 0; i < 5; ++i) {
        VLMC_XMLNode *const child = newNode(root, "child");
        descendants.append(child);
        for (int j = 0; j < 3; ++j) {
            descendants.append(newNode(newNode(child, "middle"), "leaf"));
        }
    }

    delete root;

    for (const QPointer<VLMC_XMLNode> &node :
         static_cast<const QList<QPointer<VLMC_XMLNode>> &>(descendants)) {
        QVERIFY(!node);
    }
}

void tst_VLMC_XMLNode::destructor_detachesFromTheParent()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "a");
    VLMC_XMLNode *const child = newNode(root.data(), "b");
    newNode(child, "inner");
    newNode(root.data(), "c");

    delete child;

    QCOMPARE(described(root.data()), QByteArray("r[a c]"));
}

void tst_VLMC_XMLNode::destructor_destroysChildrenBeforeParentsInOrder()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    VLMC_XMLNode *const first = newNode(root, "first");
    newNode(first, "first.1");
    newNode(first, "first.2");
    newNode(newNode(root, "second"), "second.1");
    newNode(root, "third");
    QStringList order;
    QList<VLMC_XMLNode *> waiting;
    waiting << root;
    while (!waiting.isEmpty()) {
        VLMC_XMLNode *const node = waiting.takeLast();
        waiting += node->getXMLNodeChildren();
        const QString name = node->getName();
        whenDestroyed(node, [&order, name] { order << name; });
    }

    delete root;

    QCOMPARE(order.join(utf8(" ")), utf8("first.1 first.2 first second.1 second third r"));
}

void tst_VLMC_XMLNode::destructor_skipsNullEntries()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    QPointer<VLMC_XMLNode> child(newNode(root, "a"));
    child->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    delete root;
    QVERIFY(!child);
}

// The list of children decides, not the pointer back.
void tst_VLMC_XMLNode::destructor_destroysAChildWithoutParentPointer()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    QScopedPointer<VLMC_XMLNode> other(newNode(nullptr, "other"));
    QPointer<VLMC_XMLNode> child(newNode(root, "child"));
    other->removeXMLNode(child);
    delete root;
    QVERIFY(!child);
}

void tst_VLMC_XMLNode::destructor_leavesDetachedNodesAlone()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    QScopedPointer<VLMC_XMLNode> child(newNode(root, "child"));
    newNode(child.data(), "inner");
    root->removeXMLNode(child.data());
    delete root;
    QCOMPARE(described(child.data()), QByteArray("child[inner]"));
}

void tst_VLMC_XMLNode::destructor_toleratesPendingDeletions()
{
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    QPointer<VLMC_XMLNode> first(newNode(root, "a"));
    QPointer<VLMC_XMLNode> second(newNode(root, "b"));
    first->deleteLater();
    runDeferredDeletes();
    QVERIFY(!first);
    QCOMPARE(described(root), QByteArray("r[b]"));
    second->deleteLater();
    delete root;
    QVERIFY(!second);
    runDeferredDeletes();
}

void tst_VLMC_XMLNode::destructor_needsNoStackForDepth()
{
    runOnSmallStack([] {
        QPointer<VLMC_XMLNode> root(newChain(100000));
        delete root;
        QVERIFY(!root);
    });
}

void tst_VLMC_XMLNode::setAttribute_replacesAll()
{
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "n"));
    addAttribute(node.data(), "a", "1");
    addAttribute(node.data(), "b", "2");
    QXmlStreamAttributes attributes;
    attributes.append(utf8("b"), utf8("3"));
    attributes.append(utf8("c"), utf8("4"));

    node->setAttribute(attributes);

    QCOMPARE(described(node.data()), QByteArray("n{b=3}{c=4}"));
}

void tst_VLMC_XMLNode::setAttribute_copies()
{
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "n"));
    QXmlStreamAttributes attributes;
    attributes.append(utf8("a"), utf8("1"));
    node->setAttribute(attributes);
    attributes.append(utf8("b"), utf8("2"));
    QCOMPARE(described(node.data()), QByteArray("n{a=1}"));
    addAttribute(node.data(), "c", "3");
    QCOMPARE(int(attributes.size()), 2);
}

void tst_VLMC_XMLNode::setAttribute_ofAnEmptySetRemovesAll()
{
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "n"));
    addAttribute(node.data(), "a", "1");
    QXmlStreamAttributes none;
    node->setAttribute(none);
    QVERIFY(node->getAttribute().isEmpty());
    QVERIFY(!node->isAttribute(utf8("a")));
}

void tst_VLMC_XMLNode::isAttribute_asksForNameAndValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("there") << utf8("a") << true;
    QTest::newRow("another case") << utf8("A") << false;
    QTest::newRow("absent") << utf8("x") << false;
    QTest::newRow("a part") << utf8("long") << false;
    QTest::newRow("empty value") << utf8("empty") << true;
    QTest::newRow("null value") << utf8("null") << false;
    QTest::newRow("qualified name") << utf8("p:q") << true;
    QTest::newRow("local part of a qualified name") << utf8("q") << false;
    QTest::newRow("empty name") << QString() << false;
}

void tst_VLMC_XMLNode::isAttribute_asksForNameAndValue()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "n"));
    addAttribute(node.data(), "a", "1");
    addAttribute(node.data(), "longer", "1");
    addAttribute(node.data(), "empty", "");
    addAttribute(node.data(), "p:q", "1");
    node->getAttribute().append(utf8("null"), QString());
    QCOMPARE(node->isAttribute(name), found);
}

void tst_VLMC_XMLNode::isAttribute_asksTheFirstOfTwo()
{
    QScopedPointer<VLMC_XMLNode> node(newNode(nullptr, "n"));
    node->getAttribute().append(utf8("a"), QString());
    node->getAttribute().append(utf8("a"), utf8("1"));
    QVERIFY(!node->isAttribute(utf8("a")));
}

void tst_VLMC_XMLNode::getChildByName_finds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("from");
    QTest::addColumn<QByteArray>("found");
    QTest::addColumn<int>("index");
    QTest::newRow("from 0") << utf8("a") << 0 << QByteArray("a{n=0}") << 0;
    QTest::newRow("at the match itself") << utf8("a") << 2 << QByteArray("a{n=2}") << 2;
    QTest::newRow("behind the first match") << utf8("a") << 1 << QByteArray("a{n=2}") << 2;
    QTest::newRow("behind the last match") << utf8("a") << 3 << QByteArray("null") << 4;
    QTest::newRow("last child") << utf8("d") << 0 << QByteArray("d{n=3}") << 3;
    QTest::newRow("no such child") << utf8("x") << 0 << QByteArray("null") << 4;
    QTest::newRow("another case") << utf8("A") << 0 << QByteArray("null") << 4;
    QTest::newRow("at the count") << utf8("a") << 4 << QByteArray("null") << 4;
    QTest::newRow("past the count") << utf8("a") << 5 << QByteArray("null") << 5;
    QTest::newRow("far past the count") << utf8("a") << 100 << QByteArray("null") << 100;
}

void tst_VLMC_XMLNode::getChildByName_finds()
{
    QFETCH(QString, name);
    QFETCH(int, from);
    QFETCH(QByteArray, found);
    QFETCH(int, index);
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    addAttribute(newNode(root.data(), "a"), "n", "0");
    addAttribute(newNode(root.data(), "b"), "n", "1");
    addAttribute(newNode(root.data(), "a"), "n", "2");
    addAttribute(newNode(root.data(), "d"), "n", "3");

    int position = from;
    QCOMPARE(described(root->getChildByName(name, position)), found);
    QCOMPARE(position, index);
}

void tst_VLMC_XMLNode::getChildByName_staysAtTheMatch()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "x");
    VLMC_XMLNode *const child = newNode(root.data(), "a");
    newNode(root.data(), "a");
    QString name = utf8("a");
    int index = 0;
    QCOMPARE(root->getChildByName(name, index), child);
    QCOMPARE(root->getChildByName(name, index), child);
    QCOMPARE(index, 1);
}

void tst_VLMC_XMLNode::getXMLNodeChildByName_givesTheFirst()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    VLMC_XMLNode *const other = newNode(root.data(), "b");
    VLMC_XMLNode *const child = newNode(root.data(), "a");
    newNode(root.data(), "a");
    newNode(other, "deep");
    QString name = utf8("a");
    QCOMPARE(root->getXMLNodeChildByName(name), child);
    name = utf8("x");
    QVERIFY(!root->getXMLNodeChildByName(name));
    name = utf8("deep");
    QVERIFY(!root->getXMLNodeChildByName(name));
}

void tst_VLMC_XMLNode::getXMLNodeChildrenByName_givesAllInOrder()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    QList<VLMC_XMLNode *> expected;
    expected << newNode(root.data(), "a") << newNode(root.data(), "a");
    newNode(root.data(), "b");
    expected << newNode(root.data(), "a");
    QString name = utf8("a");
    QCOMPARE(root->getXMLNodeChildrenByName(name), expected);
    QCOMPARE(int(root->getXMLNodeChildren().size()), 4);
    name = utf8("x");
    QVERIFY(root->getXMLNodeChildrenByName(name).isEmpty());
}

void tst_VLMC_XMLNode::searches_skipNullEntries()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    VLMC_XMLNode *const child = newNode(root.data(), "a");
    root->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
    QString name = utf8("a");
    int index = 0;
    QCOMPARE(root->getChildByName(name, index), child);
    QCOMPARE(index, 1);
    ++index;
    QVERIFY(!root->getChildByName(name, index));
    QCOMPARE(index, 3);
    QCOMPARE(root->getXMLNodeChildByName(name), child);
    QCOMPARE(root->getXMLNodeChildrenByName(name), QList<VLMC_XMLNode *>() << child);
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_readsNumbers_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("found");
    QTest::newRow("000") << utf8("000") << 0 << true;
    QTest::newRow("007") << utf8("007") << 7 << true;
    QTest::newRow("7") << utf8("7") << 7 << true;
    QTest::newRow("998") << utf8("998") << 998 << true;
    QTest::newRow("0010 is not octal") << utf8("0010") << 10 << true;
    QTest::newRow("+7") << utf8("+7") << 7 << true;
    QTest::newRow("-7") << utf8("-7") << -7 << true;
    QTest::newRow("-0") << utf8("-0") << 0 << true;
    QTest::newRow("blanks around") << utf8(" 7 ") << 7 << true;
    QTest::newRow("2147483647") << utf8("2147483647") << 2147483647 << true;
    QTest::newRow("2147483648") << utf8("2147483648") << 0 << false;
    QTest::newRow("another number") << utf8("006") << 7 << false;
    QTest::newRow("empty is not 0") << utf8("") << 0 << false;
    QTest::newRow("blank is not 0") << utf8(" ") << 0 << false;
    QTest::newRow("abc is not 0") << utf8("abc") << 0 << false;
    QTest::newRow("7a is not 7") << utf8("7a") << 7 << false;
    QTest::newRow("7.0 is not 7") << utf8("7.0") << 7 << false;
    QTest::newRow("0x7 is not 7") << utf8("0x7") << 7 << false;
    QTest::newRow("1,000 is not 1000") << utf8("1,000") << 1000 << false;
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_readsNumbers()
{
    QFETCH(QString, value);
    QFETCH(int, id);
    QFETCH(bool, found);
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    newNode(root.data(), "without");
    VLMC_XMLNode *const child = newNode(root.data(), "with");
    child->getAttribute().append(utf8("id"), value);
    QString attributeName = utf8("id");
    VLMC_XMLNode *const none = nullptr;
    QCOMPARE(root->getXMLNodeChildByID(id, attributeName), found ? child : none);
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_givesTheFirst()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    addAttribute(newNode(root.data(), "x"), "id", "002");
    VLMC_XMLNode *const first = newNode(root.data(), "a");
    addAttribute(first, "id", "1");
    addAttribute(newNode(root.data(), "b"), "id", "001");
    QString attributeName = utf8("id");
    QCOMPARE(root->getXMLNodeChildByID(1, attributeName), first);
    QVERIFY(!root->getXMLNodeChildByID(0, attributeName));
    QVERIFY(!root->getXMLNodeChildByID(-1, attributeName));
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_asksTheGivenAttribute()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    VLMC_XMLNode *const first = newNode(root.data(), "a");
    addAttribute(first, "no", "1");
    VLMC_XMLNode *const second = newNode(root.data(), "b");
    addAttribute(second, "ID", "1");
    addAttribute(second, "p:id", "1");
    VLMC_XMLNode *const third = newNode(root.data(), "c");
    addAttribute(third, "id", "1");
    QString attributeName = utf8("id");
    QCOMPARE(root->getXMLNodeChildByID(1, attributeName), third);
    attributeName = utf8("no");
    QCOMPARE(root->getXMLNodeChildByID(1, attributeName), first);
    attributeName = utf8("p:id");
    QCOMPARE(root->getXMLNodeChildByID(1, attributeName), second);
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_asksTheFirstOfTwo()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    VLMC_XMLNode *const child = newNode(root.data(), "a");
    addAttribute(child, "id", "1");
    addAttribute(child, "id", "2");
    QString attributeName = utf8("id");
    QCOMPARE(root->getXMLNodeChildByID(1, attributeName), child);
    QVERIFY(!root->getXMLNodeChildByID(2, attributeName));
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_givesNullWithoutChildren()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    QString attributeName = utf8("id");
    QVERIFY(!root->getXMLNodeChildByID(0, attributeName));
}

void tst_VLMC_XMLNode::objectTree_playsNoPart()
{
    QScopedPointer<VLMC_XMLNode> root(newNode(nullptr, "r"));
    VLMC_XMLNode *const child = newNode(root.data(), "a");
    QVERIFY(!root->parent());
    QVERIFY(!child->parent());
    QVERIFY(root->children().isEmpty());
    QCOMPARE(QByteArray(child->metaObject()->className()), QByteArray("QObject"));
}

QTEST_GUILESS_MAIN(tst_VLMC_XMLNode)
#include "tst_VLMC_XMLNode.moc"
