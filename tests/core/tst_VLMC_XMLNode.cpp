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
    void destructor_detachesFromTheParent();
    void destructor_destroysChildrenBeforeParentsInOrder();
    void destructor_skipsNullEntries();
    void destructor_destroysAChildWithoutParentPointer();
    void destructor_toleratesPendingDeletions();
    void destructor_needsNoStackForDepth();
    void setAttribute_replacesAll();
    void isAttribute_asksForNameAndValue_data();
    void isAttribute_asksForNameAndValue();
    void getChildByName_finds_data();
    void getChildByName_finds();
    void getXMLNodeChildByName_givesTheFirst();
    void getXMLNodeChildrenByName_givesAllInOrder();
    void getXMLNodeChildByID_readsNumbers_data();
    void getXMLNodeChildByID_readsNumbers();
    void getXMLNodeChildByID_finds_data();
    void getXMLNodeChildByID_finds();
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

void tst_VLMC_XMLNode::constructor_attaches_data() { addXMLNode_attaches_data(); }

void tst_VLMC_XMLNode::constructor_attaches()
{
    QFETCH(int, prepend);
    QFETCH(QByteArray, tree);
    const Tree root(newTree("r[a b]"));

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
    QTest::newRow("0: behind the others") << 0 << QByteArray("r[a b new]");
    QTest::newRow("1: before the others") << 1 << QByteArray("r[new a b]");
    QTest::newRow("2") << 2 << QByteArray("r[new a b]");
    QTest::newRow("127") << 127 << QByteArray("r[new a b]");
    QTest::newRow("128 as a char") << int(char(128)) << QByteArray("r[new a b]");
}

void tst_VLMC_XMLNode::addXMLNode_attaches()
{
    QFETCH(int, prepend);
    QFETCH(QByteArray, tree);
    const Tree root(newTree("r[a b]"));
    VLMC_XMLNode *const node = newTree("new");
    char place = char(prepend);

    root->addXMLNode(node, place);

    QCOMPARE(described(root.data()), tree);
    QCOMPARE(node->getXMLNodeParent(), root.data());
    QCOMPARE(int(place), prepend);
}

void tst_VLMC_XMLNode::addXMLNode_takesTheChildFromItsOldParent()
{
    const Tree before(newTree("before[child[grandchild] stays]"));
    const Tree after(newTree("after"));
    VLMC_XMLNode *const child = childAt(before, 0);
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
    const Tree root(newTree("r[a b c]"));
    char place = char(prepend);
    root->addXMLNode(childAt(root, position), place);
    QCOMPARE(described(root.data()), tree);
}

void tst_VLMC_XMLNode::addXMLNode_ignoresNull()
{
    const Tree root(newTree("r"));
    for (char place = 0; place < 2; ++place) {
        root->addXMLNode(nullptr, place);
        QCOMPARE(described(root.data()), QByteArray("r"));
    }
}

void tst_VLMC_XMLNode::removeXMLNode_detachesWithoutDestroying()
{
    const Tree root(newTree("r[a b[inner] c]"));
    const Tree child(childAt(root, 1));

    root->removeXMLNode(child.data());

    QVERIFY(!child->getXMLNodeParent());
    QCOMPARE(described(child.data()), QByteArray("b[inner]"));
    QCOMPARE(described(root.data()), QByteArray("r[a c]"));
}

void tst_VLMC_XMLNode::removeXMLNode_clearsTheParentOfAStranger()
{
    const Tree root(newTree("r[child]"));
    const Tree other(newTree("other"));

    other->removeXMLNode(childAt(root, 0));

    QVERIFY(!childAt(root, 0)->getXMLNodeParent());
    QCOMPARE(described(root.data()), QByteArray("r[child]"));
    QCOMPARE(described(other.data()), QByteArray("other"));
}

void tst_VLMC_XMLNode::removeXMLNode_removesEveryOccurrence()
{
    const Tree root(newTree("r[twice a]"));
    const Tree child(childAt(root, 0));
    root->getXMLNodeChildren().append(child.data());
    root->getXMLNodeChildren().prepend(child.data());

    root->removeXMLNode(child.data());

    QCOMPARE(described(root.data()), QByteArray("r[a]"));
    QVERIFY(!child->getXMLNodeParent());
}

void tst_VLMC_XMLNode::removeXMLNode_ignoresNull()
{
    const Tree root(newTree("r[a null]"));
    root->removeXMLNode(nullptr);
    QCOMPARE(described(root.data()), QByteArray("r[a null]"));
}

void tst_VLMC_XMLNode::destructor_detachesFromTheParent()
{
    const Tree root(newTree("r[a b[inner] c]"));
    delete childAt(root, 1);
    QCOMPARE(described(root.data()), QByteArray("r[a c]"));
}

void tst_VLMC_XMLNode::destructor_destroysChildrenBeforeParentsInOrder()
{
    VLMC_XMLNode *const root = newTree("r[a[b c] d[e] f]");
    QByteArray order;
    QList<VLMC_XMLNode *> waiting;
    waiting << root;
    while (!waiting.isEmpty()) {
        VLMC_XMLNode *const node = waiting.takeLast();
        waiting += node->getXMLNodeChildren();
        const QByteArray name = node->getName().toUtf8();
        whenDestroyed(node, [&order, name] { order += name; });
    }

    delete root;

    QCOMPARE(order, QByteArray("bcaedfr"));
}

void tst_VLMC_XMLNode::destructor_skipsNullEntries()
{
    VLMC_XMLNode *const root = newTree("r[null a[null] null]");
    const QPointer<VLMC_XMLNode> child(root->getXMLNodeChildren().at(1));
    delete root;
    QVERIFY(!child);
}

// The list of children decides, not the pointer back.
void tst_VLMC_XMLNode::destructor_destroysAChildWithoutParentPointer()
{
    VLMC_XMLNode *const root = newTree("r[child]");
    const Tree other(newTree("other"));
    const QPointer<VLMC_XMLNode> child(root->getXMLNodeChildren().first());
    other->removeXMLNode(child);
    delete root;
    QVERIFY(!child);
}

void tst_VLMC_XMLNode::destructor_toleratesPendingDeletions()
{
    VLMC_XMLNode *const root = newTree("r[a b]");
    const QPointer<VLMC_XMLNode> first(root->getXMLNodeChildren().first());
    const QPointer<VLMC_XMLNode> second(root->getXMLNodeChildren().last());
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
    const Tree node(newTree("n{a=1}{b=2}"));
    QXmlStreamAttributes attributes;
    attributes.append(utf8("b"), utf8("3"));
    attributes.append(utf8("c"), utf8("4"));
    node->setAttribute(attributes);
    // Of which the node has a copy.
    attributes.clear();
    QCOMPARE(described(node.data()), QByteArray("n{b=3}{c=4}"));
    node->setAttribute(attributes);
    QCOMPARE(described(node.data()), QByteArray("n"));
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
    const Tree node(newTree("n{a=1}{longer=1}{empty=}{p:q=1}"));
    node->getAttribute().append(utf8("null"), QString());
    // The first of two decides.
    node->getAttribute().append(utf8("null"), utf8("1"));
    QCOMPARE(node->isAttribute(name), found);
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
    QTest::newRow("grandchild") << utf8("deep") << 0 << QByteArray("null") << 4;
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
    const Tree root(newTree("r[a{n=0} b{n=1}[deep] a{n=2} d{n=3}]"));
    int position = from;
    QCOMPARE(described(root->getChildByName(name, position)), found);
    QCOMPARE(position, index);
}

void tst_VLMC_XMLNode::getXMLNodeChildByName_givesTheFirst()
{
    const Tree root(newTree("r[null b[deep] a a null]"));
    QString name = utf8("a");
    QCOMPARE(root->getXMLNodeChildByName(name), childAt(root, 2));
    name = utf8("x");
    QVERIFY(!root->getXMLNodeChildByName(name));
    name = utf8("deep");
    QVERIFY(!root->getXMLNodeChildByName(name));
}

void tst_VLMC_XMLNode::getXMLNodeChildrenByName_givesAllInOrder()
{
    const Tree root(newTree("r[a a null b a null]"));
    QString name = utf8("a");
    QCOMPARE(root->getXMLNodeChildrenByName(name),
             QList<VLMC_XMLNode *>() << childAt(root, 0) << childAt(root, 1) << childAt(root, 4));
    name = utf8("x");
    QVERIFY(root->getXMLNodeChildrenByName(name).isEmpty());
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
    const Tree root(newTree("r[without with]"));
    childAt(root, 1)->getAttribute().append(utf8("id"), value);
    QString attributeName = utf8("id");
    VLMC_XMLNode *const none = nullptr;
    QCOMPARE(root->getXMLNodeChildByID(id, attributeName), found ? childAt(root, 1) : none);
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_finds_data()
{
    QTest::addColumn<QByteArray>("tree");
    QTest::addColumn<QString>("attributeName");
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("name");
    const QByteArray numbered = "r[x{id=002} a{id=1} b{id=001} null]";
    const QByteArray other = "r[a{no=1} b{ID=1}{p:id=1} c{id=1}]";
    const QByteArray twice = "r[a{id=1}{id=2}]";
    QTest::newRow("no child") << QByteArray("r") << utf8("id") << 0 << QByteArray("none");
    QTest::newRow("the first of two") << numbered << utf8("id") << 1 << QByteArray("a");
    QTest::newRow("no such number") << numbered << utf8("id") << 0 << QByteArray("none");
    QTest::newRow("negative") << numbered << utf8("id") << -1 << QByteArray("none");
    QTest::newRow("attribute \"id\"") << other << utf8("id") << 1 << QByteArray("c");
    QTest::newRow("attribute \"no\"") << other << utf8("no") << 1 << QByteArray("a");
    QTest::newRow("qualified name") << other << utf8("p:id") << 1 << QByteArray("b");
    QTest::newRow("first attribute") << twice << utf8("id") << 1 << QByteArray("a");
    QTest::newRow("second attribute") << twice << utf8("id") << 2 << QByteArray("none");
}

void tst_VLMC_XMLNode::getXMLNodeChildByID_finds()
{
    QFETCH(QByteArray, tree);
    QFETCH(QString, attributeName);
    QFETCH(int, id);
    QFETCH(QByteArray, name);
    const Tree root(newTree(tree.constData()));
    VLMC_XMLNode *const found = root->getXMLNodeChildByID(id, attributeName);
    QCOMPARE(found ? found->getName().toUtf8() : QByteArray("none"), name);
}

void tst_VLMC_XMLNode::objectTree_playsNoPart()
{
    const Tree root(newTree("r[a]"));
    QVERIFY(!root->parent());
    QVERIFY(!childAt(root, 0)->parent());
    QVERIFY(root->children().isEmpty());
    QCOMPARE(QByteArray(root->metaObject()->className()), QByteArray("QObject"));
}

QTEST_GUILESS_MAIN(tst_VLMC_XMLNode)
#include "tst_VLMC_XMLNode.moc"
