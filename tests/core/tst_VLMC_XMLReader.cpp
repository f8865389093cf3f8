#include "core/VLMC_XMLReader.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"
#include "tests/support/SmallStack.h"

#include <QtCore/QBuffer>

class tst_VLMC_XMLReader : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();

    void readDevice_buildsTheTree_data();
    void readDevice_buildsTheTree();
    void readDevice_linksParents();
    void readDevice_givesNullWithoutElement_data();
    void readDevice_givesNullWithoutElement();
    void readDevice_keepsWhatCameBeforeAnError_data();
    void readDevice_keepsWhatCameBeforeAnError();
    void readDevice_takesTheEncodingFromTheDocument_data();
    void readDevice_takesTheEncodingFromTheDocument();
    void readDevice_countsEntitiesInUtf16();
    void readDevice_endsAtAnEntityThatIsNoText();
    void readDevice_startsAnewWithEachDevice();
    void readDevice_readsLongTextsWhole();
    void readDevice_needsNoStackForDepth();
    void readDevice_readsEveryPosition();
    void readDevice_keepsDocumentsApart();
    void readPath_readsResources();
    void readXMLNode_appendsToItsParent();
    void readXMLNode_readsOneElementAlone();
    void readXMLNode_stopsBehindItsEndTag();
    void readXMLNode_keepsPartOfAnUnfinishedElement();
    void readXMLNode_givesAnEmptyNodeWithoutElement();
    void readXMLNode_needsNoStackForDepth();
    void readText_takesQualifyingTokens_data();
    void readText_takesQualifyingTokens();
};

namespace
{
VLMC_XMLNode *readBytes(const QByteArray &bytes)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    VLMC_XMLNode *const root = reader.read(buffer);
    if (!buffer.isOpen()) {
        qFatal("the reader closed the device");
    }
    return root;
}

// With its mark, little end first.
QByteArray utf16(const QByteArray &ascii)
{
    QByteArray bytes("\xff\xfe");
    for (const char character : ascii) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

QByteArray declaring(const QByteArray &declaration, const QByteArray &value,
                     const QByteArray &content)
{
    return declaration + "<!DOCTYPE r [<!ENTITY e \"" + value + "\">]><r>" + content + "</r>";
}
} // namespace

// Only a file that cannot be read is worth a message, which other tests see.
void tst_VLMC_XMLReader::cleanup()
{
    runDeferredDeletes();
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLReader::readDevice_buildsTheTree_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("root alone") << QByteArray("<r/>") << QByteArray("r");
    QTest::newRow("root with start and end tag") << QByteArray("<r></r>") << QByteArray("r");
    QTest::newRow("children in order")
        << QByteArray("<r><a/><b><c/></b><a/></r>") << QByteArray("r[a b[c] a]");
    QTest::newRow("attributes in order")
        << QByteArray("<r z=\"1\" a=\"2\" m=\"\"><c b='&lt;&#x3042;'/></r>")
        << QByteArray("r{z=1}{a=2}{m=}[c{b=<\xe3\x81\x82}]");
    QTest::newRow("positions, and what looks like them")
        << QByteArray("<r id=\"000\"><a id=\"000\"/><a id=\"001\" b=\"1\"/><a id=\"000\"/>"
                      "<a id=\"3\"/><a id=\"0004\"/><a id=\"+05\"/><a ID=\"006\"/>"
                      "<a id=\"&#x30;07\"/></r>")
        << QByteArray("r{id=000}[a{id=000} a{id=001}{b=1} a{id=000} a{id=3} a{id=0004} a{id=+05} "
                      "a{ID=006} a{id=007}]");
    QTest::newRow("only whitespace between children")
        << QByteArray("<r>\n    <a> \t\r\n</a>\n    <b/>\n</r>") << QByteArray("r[a b]");
    QTest::newRow("blanks around a text are kept")
        << QByteArray("<r>\n  text \t </r>") << QByteArray("r0'\n  text \t '");
    QTest::newRow("escaped text is one text")
        << QByteArray("<r>a &amp; &lt;b&gt; &#65;&quot;</r>") << QByteArray("r0'a & <b> A\"'");
    QTest::newRow("escaped blank is whitespace no longer")
        << QByteArray("<r>&#32;</r>") << QByteArray("r0' '");
    QTest::newRow("CDATA") << QByteArray("<r><![CDATA[a<&b]]></r>") << QByteArray("r1'a<&b'");
    QTest::newRow("CDATA of blanks is no whitespace")
        << QByteArray("<r><![CDATA[ \n ]]></r>") << QByteArray("r1' \n '");
    QTest::newRow("empty CDATA is no text")
        << QByteArray("<r><![CDATA[]]>x</r>") << QByteArray("r0'x'");
    QTest::newRow("empty CDATA sets the type")
        << QByteArray("<r><![CDATA[]]></r>") << QByteArray("r1''");
    QTest::newRow("CDATA behind whitespace")
        << QByteArray("<r>\n <![CDATA[x]]>\n</r>") << QByteArray("r1'x'");
    QTest::newRow("CDATA behind text is dropped")
        << QByteArray("<r>a<![CDATA[b]]></r>") << QByteArray("r0'a'");
    QTest::newRow("text behind CDATA is dropped")
        << QByteArray("<r><![CDATA[a]]>b</r>") << QByteArray("r1'a'");
    QTest::newRow("second CDATA is dropped")
        << QByteArray("<r><![CDATA[a]]><![CDATA[b]]></r>") << QByteArray("r1'a'");
    QTest::newRow("text, child, more text")
        << QByteArray("<r>one<c>two</c>three</r>") << QByteArray("r0'one'[c0'two']");
    QTest::newRow("text behind a child")
        << QByteArray("<r><c/>text</r>") << QByteArray("r0'text'[c]");
    QTest::newRow("text behind a comment is dropped")
        << QByteArray("<r>one<!-- x -->two</r>") << QByteArray("r0'one'");
    QTest::newRow("comments and instructions are dropped") << QByteArray(
        "<?xml version=\"1.0\"?><!-- a --><?p q?><r><!-- b --><?p q?><c/></r><!-- c -->")
                                                           << QByteArray("r[c]");
    QTest::newRow("document type is dropped")
        << QByteArray("<!DOCTYPE r SYSTEM \"r.dtd\"><r><c/></r>") << QByteArray("r[c]");
    QTest::newRow("element names lose their prefix")
        << QByteArray("<p:r xmlns:p=\"u\"><p:c p:a=\"1\" b=\"2\"/></p:r>")
        << QByteArray("r[c{p:a=1}{b=2}]");
    QTest::newRow("default namespace")
        << QByteArray("<r xmlns=\"u\"><c/></r>") << QByteArray("r[c]");
}

void tst_VLMC_XMLReader::readDevice_buildsTheTree()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, tree);
    const Tree root(readBytes(document));
    QCOMPARE(described(root.data()), tree);
}

void tst_VLMC_XMLReader::readDevice_linksParents()
{
    const Tree root(readBytes("<r><a><b/></a><c/></r>"));
    QVERIFY(root);
    QVERIFY(!root->getXMLNodeParent());
    VLMC_XMLNode *const first = root->getXMLNodeChildren().first();
    QCOMPARE(first->getXMLNodeParent(), root.data());
    QCOMPARE(first->getXMLNodeChildren().first()->getXMLNodeParent(), first);
    QCOMPARE(root->getXMLNodeChildren().last()->getXMLNodeParent(), root.data());
}

void tst_VLMC_XMLReader::readDevice_givesNullWithoutElement_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blanks") << QByteArray(" \n ");
    QTest::newRow("declaration alone") << QByteArray("<?xml version=\"1.0\"?>\n");
    QTest::newRow("comment alone") << QByteArray("<!-- r -->");
    QTest::newRow("plain text") << QByteArray("text");
    QTest::newRow("end tag") << QByteArray("</r>");
    QTest::newRow("unfinished start tag") << QByteArray("<r a=\"1\"");
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10);
    QTest::newRow("unknown encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"nope\"?><r/>");
}

void tst_VLMC_XMLReader::readDevice_givesNullWithoutElement()
{
    QFETCH(QByteArray, document);
    QVERIFY(!readBytes(document));
}

void tst_VLMC_XMLReader::readDevice_keepsWhatCameBeforeAnError_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("tree");
    QTest::newRow("cut behind a start tag")
        << QByteArray("<r><a>1</a><b>") << QByteArray("r[a0'1' b]");
    QTest::newRow("cut in a start tag") << QByteArray("<r><a>1</a><b x=") << QByteArray("r[a0'1']");
    QTest::newRow("cut behind an end tag") << QByteArray("<r><a>1</a>") << QByteArray("r[a0'1']");
    QTest::newRow("cut deep down") << QByteArray("<r><a><b><c>") << QByteArray("r[a[b[c]]]");
    QTest::newRow("wrong end tag")
        << QByteArray("<r><a>1</a><b>2</c></r>") << QByteArray("r[a0'1' b0'2']");
    QTest::newRow("wrong end tag, then more") << QByteArray("<r><a></r><z/>") << QByteArray("r[a]");
    QTest::newRow("unknown entity")
        << QByteArray("<r><a>1</a><b>&nope;</b><c/></r>") << QByteArray("r[a0'1' b]");
    QTest::newRow("attribute twice")
        << QByteArray("<r><a/><b x=\"1\" x=\"2\"/></r>") << QByteArray("r[a]");
    QTest::newRow("undeclared prefix") << QByteArray("<r><a/><p:b/></r>") << QByteArray("r[a]");
    QTest::newRow("second root") << QByteArray("<r><a/></r><s><b/></s>") << QByteArray("r[a]");
    QTest::newRow("text behind the root") << QByteArray("<r><a/></r>text") << QByteArray("r[a]");
}

void tst_VLMC_XMLReader::readDevice_keepsWhatCameBeforeAnError()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, tree);
    const Tree root(readBytes(document));
    QCOMPARE(described(root.data()), tree);
}

void tst_VLMC_XMLReader::readDevice_takesTheEncodingFromTheDocument_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("UTF-8 by default") << QByteArray("<r>\xe3\x81\x82</r>");
    QTest::newRow("UTF-8 with mark") << QByteArray("\xef\xbb\xbf<r>\xe3\x81\x82</r>");
    QTest::newRow("UTF-8 declared")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><r>\xe3\x81\x82</r>");
    QTest::newRow("Shift JIS declared")
        << QByteArray("<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><r>\x82\xa0</r>");
    QTest::newRow("EUC-JP declared")
        << QByteArray("<?xml version=\"1.0\" encoding=\"EUC-JP\"?><r>\xa4\xa2</r>");
    QTest::newRow("UTF-16, little end first, with mark")
        << QByteArray("\xff\xfe<\0r\0>\0\x42\x30<\0/\0r\0>\0", 18);
}

void tst_VLMC_XMLReader::readDevice_takesTheEncodingFromTheDocument()
{
    QFETCH(QByteArray, document);
    const Tree root(readBytes(document));
    QCOMPARE(described(root.data()), QByteArray("r0'\xe3\x81\x82'"));
}

// What references expand to is counted unless an encoding other than UTF-8 is declared; a byte
// order mark alone is not a declaration.
void tst_VLMC_XMLReader::readDevice_countsEntitiesInUtf16()
{
    const QByteArray use = "<a>&e;</a>";
    const Tree few(readBytes(utf16(declaring("", "text", use))));
    QCOMPARE(described(few.data()), QByteArray("r[a0'text']"));

    const QByteArray most(4096, 'e');
    const Tree last(readBytes(utf16(declaring("", most, use + "<b/>"))));
    QCOMPARE(described(last.data()), "r[a0'" + most + "' b]");
    const Tree tooMany(readBytes(utf16(declaring("", most, use + use))));
    QCOMPARE(described(tooMany.data()), "r[a0'" + most + "' a]");

    const QByteArray declared = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>";
    const Tree none(readBytes(utf16(declaring(declared, "text", use))));
    QVERIFY(!none);
}

// Its value is "&e" without the ";" of a reference.
void tst_VLMC_XMLReader::readDevice_endsAtAnEntityThatIsNoText()
{
    const Tree root(readBytes(declaring("", "&#38;e", "<a/>&e;<b/>")));
    QCOMPARE(described(root.data()), QByteArray("r[a]"));
}

void tst_VLMC_XMLReader::readDevice_startsAnewWithEachDevice()
{
    QByteArray broken = "<r><a>";
    QByteArray whole = "<s><b/></s>";
    QBuffer first(&broken);
    QBuffer second(&whole);
    first.open(QIODevice::ReadOnly);
    second.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    const Tree firstRoot(reader.read(first));
    const Tree secondRoot(reader.read(second));
    QCOMPARE(described(firstRoot.data()), QByteArray("r[a]"));
    QCOMPARE(described(secondRoot.data()), QByteArray("s[b]"));
}

void tst_VLMC_XMLReader::readDevice_readsLongTextsWhole()
{
    const QByteArray text = QByteArray(100000, 'x') + QByteArray("\xe3\x81\x82").repeated(50000);
    const Tree root(readBytes("<r>" + text + "</r>"));
    QVERIFY(root);
    QCOMPARE(root->getText().toUtf8(), text);
}

void tst_VLMC_XMLReader::readDevice_needsNoStackForDepth()
{
    const int levels = 100000;
    const QByteArray document =
        QByteArray("<e>").repeated(levels) + "text" + QByteArray("</e>").repeated(levels);
    runOnSmallStack([=] {
        const Tree root(readBytes(document));
        QVERIFY(root);
        QCOMPARE(depthOf(root.data()), levels);
    });
}

void tst_VLMC_XMLReader::readDevice_readsEveryPosition()
{
    QByteArray document = "<r>";
    QByteArray tree = "r[";
    for (int i = 0; i < 1100; ++i) {
        const QByteArray id = QByteArray::number(i).rightJustified(3, '0');
        document += "<a id=\"" + id + "\"/>";
        tree += (i ? " a{id=" : "a{id=") + id + '}';
    }
    const Tree root(readBytes(document + "</r>"));
    QCOMPARE(described(root.data()), tree + ']');
}

void tst_VLMC_XMLReader::readDevice_keepsDocumentsApart()
{
    const Tree changed(readBytes("<r><a id=\"000\"/></r>"));
    const Tree before(readBytes("<r><a id=\"000\"/></r>"));
    addAttribute(changed->getXMLNodeChildren().first(), "b", "1");
    const Tree after(readBytes("<r><a id=\"000\"/></r>"));
    QCOMPARE(described(changed.data()), QByteArray("r[a{id=000}{b=1}]"));
    QCOMPARE(described(before.data()), QByteArray("r[a{id=000}]"));
    QCOMPARE(described(after.data()), QByteArray("r[a{id=000}]"));
}

// A file of Qt's own kind, which the operating system does not know.
void tst_VLMC_XMLReader::readPath_readsResources()
{
    QString path = utf8(":/documents/small.xml");
    VLMC_XMLReader reader;
    const Tree root(reader.read(path));
    QCOMPARE(described(root.data()), QByteArray("r0'text'"));
}

void tst_VLMC_XMLReader::readXMLNode_appendsToItsParent()
{
    const Tree parent(newTree("p"));
    newNode(parent.data(), "first");
    VLMC_XMLReader reader;
    reader.addData(QByteArray("<r a=\"1\">text<c/></r>"));
    QVERIFY(reader.readNextStartElement());

    VLMC_XMLNode *const node = reader.readXMLNode(parent.data());

    QCOMPARE(node, parent->getXMLNodeChildren().last());
    QCOMPARE(described(parent.data()), QByteArray("p[first r{a=1}0'text'[c]]"));
}

void tst_VLMC_XMLReader::readXMLNode_readsOneElementAlone()
{
    VLMC_XMLReader reader;
    reader.addData(QByteArray("<r>before<a x=\"1\"><b>1</b></a><c>2</c>after</r>"));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), utf8("a"));

    const Tree node(reader.readXMLNode(nullptr));

    QCOMPARE(described(node.data()), QByteArray("a{x=1}[b0'1']"));
    QVERIFY(!node->getXMLNodeParent());
}

void tst_VLMC_XMLReader::readXMLNode_stopsBehindItsEndTag()
{
    VLMC_XMLReader reader;
    reader.addData(QByteArray("<r><a><b/></a><c>2</c></r>"));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    delete reader.readXMLNode(nullptr);
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), utf8("a"));

    QVERIFY(reader.readNextStartElement());
    const Tree next(reader.readXMLNode(nullptr));
    QCOMPARE(described(next.data()), QByteArray("c0'2'"));
}

void tst_VLMC_XMLReader::readXMLNode_keepsPartOfAnUnfinishedElement()
{
    VLMC_XMLReader reader;
    reader.addData(QByteArray("<r x=\"1\">text<a>1</a><b><c>"));
    QVERIFY(reader.readNextStartElement());

    const Tree node(reader.readXMLNode(nullptr));

    QCOMPARE(described(node.data()), QByteArray("r{x=1}0'text'[a0'1' b[c]]"));
    QVERIFY(reader.atEnd());

    // What comes later belongs to another call: the element that has begun is not taken up again.
    reader.addData(QByteArray("2</c></b></r>"));
    const Tree rest(reader.readXMLNode(nullptr));
    QCOMPARE(rest->getText(), utf8("2"));
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), utf8("c"));
}

void tst_VLMC_XMLReader::readXMLNode_givesAnEmptyNodeWithoutElement()
{
    VLMC_XMLReader reader;
    const Tree node(reader.readXMLNode(nullptr));
    QCOMPARE(described(node.data()), QByteArray());
}

void tst_VLMC_XMLReader::readXMLNode_needsNoStackForDepth()
{
    const int levels = 100000;
    const QByteArray document = QByteArray("<e>").repeated(levels);
    runOnSmallStack([=] {
        const Tree parent(newTree("p"));
        VLMC_XMLReader reader;
        reader.addData(document);
        QVERIFY(reader.readNextStartElement());
        reader.readXMLNode(parent.data());
        QCOMPARE(depthOf(parent.data()), levels + 1);
    });
}

void tst_VLMC_XMLReader::readText_takesQualifyingTokens_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("token");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray empty = "n7''";
    const QByteArray full = "n7' '";
    QTest::newRow("before any token") << QByteArray("<r/>") << 0 << empty << empty;
    QTest::newRow("document start") << QByteArray("<r/>") << 1 << empty << empty;
    QTest::newRow("start tag") << QByteArray("<r>x</r>") << 2 << empty << empty;
    QTest::newRow("text") << QByteArray("<r> x </r>") << 3 << empty << QByteArray("n0' x '");
    QTest::newRow("text after a text") << QByteArray("<r>x</r>") << 3 << full << full;
    QTest::newRow("end tag") << QByteArray("<r>x</r>") << 4 << empty << empty;
    QTest::newRow("whitespace") << QByteArray("<r> \n\t </r>") << 3 << empty << empty;
    QTest::newRow("CDATA") << QByteArray("<r><![CDATA[x]]></r>") << 3 << empty
                           << QByteArray("n1'x'");
    QTest::newRow("CDATA after a text") << QByteArray("<r><![CDATA[x]]></r>") << 3 << full << full;
    QTest::newRow("comment") << QByteArray("<r><!--x--></r>") << 3 << empty << empty;
    QTest::newRow("instruction") << QByteArray("<r><?a x?></r>") << 3 << empty << empty;
    QTest::newRow("document type") << QByteArray("<!DOCTYPE r><r/>") << 2 << empty << empty;
    QTest::newRow("error") << QByteArray("<r><<</r>") << 3 << empty << empty;
}

void tst_VLMC_XMLReader::readText_takesQualifyingTokens()
{
    QFETCH(QByteArray, document);
    QFETCH(int, token);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    VLMC_XMLReader reader;
    reader.addData(document);
    for (int i = 0; i < token; ++i) {
        reader.readNext();
    }
    const Tree node(newTree(before.constData()));

    reader.readText(node.data());
    QCOMPARE(described(node.data()), after);
    reader.readText(nullptr);
}

QTEST_GUILESS_MAIN(tst_VLMC_XMLReader)
#include "tst_VLMC_XMLReader.moc"
