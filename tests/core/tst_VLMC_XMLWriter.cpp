#include "core/VLMC_XMLWriter.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"
#include "tests/support/SmallStack.h"

#include <QtCore/QBuffer>

class tst_VLMC_XMLWriter : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void constructor_indents();
    void writeDevice_writesAnIndentedDocument();
    void writeDevice_writesTexts_data();
    void writeDevice_writesTexts();
    void writeDevice_writesTextBeforeChildren();
    void writeDevice_writesAttributes();
    void writeDevice_keepsPrefixesOfCleanedAttributes();
    void writeDevice_escapesNamespaces();
    void writeDevice_leavesTheTreeAlone();
    void writeDevice_refusesNullRoot();
    void writeDevice_stopsAtANullChild_data();
    void writeDevice_stopsAtANullChild();
    void writeDevice_bringsBackWhatWasRead_data();
    void writeDevice_bringsBackWhatWasRead();
    void writeDevice_needsNoStackForDepth();
    void writePath_refusesTooLargeDocument_data();
    void writePath_refusesTooLargeDocument();
    void writeDevice_takesAnySize();
    void writeXMLNode_writesOneElement();
    void writeXMLNode_refusesNull();
    void writeXMLNode_leavesTagsOpenAtANullChild();
    void writeXMLNode_writesIntoAnOpenElement();
    void writeXMLNode_needsNoStackForDepth();
};

namespace
{
const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

QByteArray written(VLMC_XMLNode *root, bool expected = true)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    VLMC_XMLWriter writer;
    const bool result = writer.write(buffer, root);
    return result == expected && buffer.isOpen() ? buffer.data()
                                                 : QByteArray("a wrong result or a closed device");
}

// What writes one element into a buffer, without line breaks.
struct ElementWriter {
    ElementWriter()
    {
        buffer.open(QIODevice::WriteOnly);
        writer.setAutoFormatting(false);
        writer.setDevice(&buffer);
    }
    QBuffer buffer;
    VLMC_XMLWriter writer;
};

const int kMaxDocumentBytes = 256 * 1024 * 1024;

// Accepts everything and keeps nothing.
class CountingDevice : public QIODevice
{
public:
    CountingDevice() : m_bytes(0) { open(QIODevice::WriteOnly); }
    qint64 bytes() const { return m_bytes; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 bytes) override
    {
        m_bytes += bytes;
        return bytes;
    }

private:
    qint64 m_bytes;
};

// A tree that is written as a document of this size. Its texts are one in memory, but for the last.
VLMC_XMLNode *newDocumentOf(int bytes)
{
    const int textBytes = 1024 * 1024;
    const int elements = bytes / textBytes;
    VLMC_XMLNode *const root = newNode(nullptr, "r");
    for (int i = 0; i < elements; ++i) {
        newNode(root, "e", "x")->setTextType(1);
    }
    const int tagBytes = int(written(root).size()) - elements;
    QString text(textBytes, QLatin1Char('x'));
    for (VLMC_XMLNode *const element : root->getXMLNodeChildren()) {
        element->setText(text);
    }
    QString rest(bytes - tagBytes - (elements - 1) * textBytes, QLatin1Char('x'));
    root->getXMLNodeChildren().last()->setText(rest);
    return root;
}
} // namespace

void tst_VLMC_XMLWriter::constructor_indents()
{
    VLMC_XMLWriter writer;
    QVERIFY(writer.autoFormatting());
    QCOMPARE(writer.autoFormattingIndent(), 4);
}

void tst_VLMC_XMLWriter::writeDevice_writesAnIndentedDocument()
{
    const Tree root(newTree("r[a[b[c0'deep'] d] e0'last']"));
    COMPARE_BYTES(written(root.data()), QByteArray(kDeclaration)
                                            + "<r>\n"
                                              "    <a>\n"
                                              "        <b>\n"
                                              "            <c>deep</c>\n"
                                              "        </b>\n"
                                              "        <d/>\n"
                                              "    </a>\n"
                                              "    <e>last</e>\n"
                                              "</r>\n");
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLWriter::writeDevice_writesTexts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("element");
    QTest::newRow("plain") << 0 << utf8("text") << QByteArray("<r>text</r>");
    QTest::newRow("plain, escaped")
        << 0 << utf8("<a> & \"b\" 'c' ]]>")
        << QByteArray("<r>&lt;a&gt; &amp; &quot;b&quot; 'c' ]]&gt;</r>");
    QTest::newRow("plain, blanks") << 0 << utf8(" \n ") << QByteArray("<r> \n </r>");
    QTest::newRow("plain, not ASCII")
        << 0 << utf8("\xe3\x81\x82") << QByteArray("<r>\xe3\x81\x82</r>");
    QTest::newRow("plain, empty") << 0 << utf8("") << QByteArray("<r/>");
    QTest::newRow("plain, null") << 0 << QString() << QByteArray("<r/>");
    QTest::newRow("CDATA") << 1 << utf8("a<&\"b") << QByteArray("<r><![CDATA[a<&\"b]]></r>");
    QTest::newRow("CDATA, empty") << 1 << utf8("") << QByteArray("<r/>");
    QTest::newRow("CDATA with its own end")
        << 1 << utf8("a]]>b") << QByteArray("<r><![CDATA[a]]]]><![CDATA[>b]]></r>");
    QTest::newRow("type 2") << 2 << utf8("text") << QByteArray("<r/>");
    QTest::newRow("type -1") << -1 << utf8("text") << QByteArray("<r/>");
    QTest::newRow("type '0'") << int('0') << utf8("text") << QByteArray("<r/>");
    QTest::newRow("type '1'") << int('1') << utf8("text") << QByteArray("<r/>");
}

void tst_VLMC_XMLWriter::writeDevice_writesTexts()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QByteArray, element);
    const Tree root(newNode(nullptr, "r"));
    root->setText(text);
    root->setTextType(char(type));
    COMPARE_BYTES(written(root.data()), kDeclaration + element + "\n");
}

void tst_VLMC_XMLWriter::writeDevice_writesTextBeforeChildren()
{
    const Tree root(newTree("r[a0'text'[b] c1'data'[d] e2'lost'[f]]"));
    COMPARE_BYTES(written(root.data()), QByteArray(kDeclaration)
                                            + "<r>\n"
                                              "    <a>text<b/>\n"
                                              "    </a>\n"
                                              "    <c><![CDATA[data]]><d/>\n"
                                              "    </c>\n"
                                              "    <e>\n"
                                              "        <f/>\n"
                                              "    </e>\n"
                                              "</r>\n");
}

void tst_VLMC_XMLWriter::writeDevice_writesAttributes()
{
    const Tree root(newNode(nullptr, "r"));
    addAttribute(root.data(), "z", "1");
    addAttribute(root.data(), "a", "<&\">'\n\t");
    addAttribute(root.data(), "empty", "");
    addAttribute(root.data(), "p:q", "\xe3\x81\x82");
    root->getAttribute().append(utf8("null"), QString());
    COMPARE_BYTES(written(root.data()),
                  QByteArray(kDeclaration)
                      + "<r z=\"1\" a=\"&lt;&amp;&quot;&gt;'&#10;&#9;\" empty=\"\""
                        " p:q=\"\xe3\x81\x82\" null=\"\"/>\n");
}

void tst_VLMC_XMLWriter::writeDevice_keepsPrefixesOfCleanedAttributes()
{
    const Tree root(newTree("r{p:q=a\x01"
                            "b}"));
    COMPARE_BYTES(written(root.data()), QByteArray(kDeclaration) + "<r p:q=\"ab\"/>\n");
}

void tst_VLMC_XMLWriter::writeDevice_escapesNamespaces()
{
    const Tree root(newNode(nullptr, "r"));
    root->getAttribute().append(QString::fromLatin1("a&b<c>d\"e'f"), QString::fromLatin1("x"),
                                QString::fromLatin1("1"));
    const QByteArray document =
        QByteArray(kDeclaration) + "<r xmlns:n1=\"a&amp;b&lt;c>d&quot;e'f\" n1:x=\"1\"/>\n";
    COMPARE_BYTES(written(root.data()), document);
}

void tst_VLMC_XMLWriter::writeDevice_leavesTheTreeAlone()
{
    const Tree root(newTree("r{a=\x02}0'a\x01"
                            "b'[c0'text']"));
    const QByteArray before = described(root.data());
    written(root.data());
    QCOMPARE(described(root.data()), before);
}

void tst_VLMC_XMLWriter::writeDevice_refusesNullRoot()
{
    COMPARE_BYTES(written(nullptr, false), QByteArray());
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_XMLWriter::writeDevice_stopsAtANullChild_data()
{
    QTest::addColumn<QByteArray>("tree");
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("first") << QByteArray("r[a[null b c0'1'] never]")
                           << QByteArray("<r>\n    <a/>\n</r>\n");
    QTest::newRow("second") << QByteArray("r[a[b null c0'1'] never]")
                            << QByteArray("<r>\n    <a>\n        <b/>\n    </a>\n</r>\n");
    QTest::newRow("last") << QByteArray("r[a[b c0'1' null] never]")
                          << QByteArray(
                                 "<r>\n    <a>\n        <b/>\n        <c>1</c>\n    </a>\n</r>\n");
}

void tst_VLMC_XMLWriter::writeDevice_stopsAtANullChild()
{
    QFETCH(QByteArray, tree);
    QFETCH(QByteArray, document);
    const Tree root(newTree(tree.constData()));
    COMPARE_BYTES(written(root.data(), false), kDeclaration + document);
    COMPARE_BYTES(loggedText(), "1 [VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.\n");
}

void tst_VLMC_XMLWriter::writeDevice_bringsBackWhatWasRead_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("again");
    const QByteArray own = QByteArray(kDeclaration)
                           + "<r docInfo=\"1.0\">\n"
                             "    <a id=\"000\" x=\"&amp;\">text &lt; more</a>\n"
                             "    <b id=\"001\"><![CDATA[<raw>&]]></b>\n"
                             "    <c>\n"
                             "        <d/>\n"
                             "    </c>\n"
                             "</r>\n";
    QTest::newRow("its own document") << own << own;
    QTest::newRow("what it does not keep")
        << QByteArray("<!DOCTYPE r><r>\n one<!-- x --><c/>two<?p q?>  <d>\n</d></r>")
        << QByteArray(kDeclaration) + "<r>\n one<c/>\n    <d/>\n</r>\n";
}

void tst_VLMC_XMLWriter::writeDevice_bringsBackWhatWasRead()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, again);
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    const Tree root(reader.read(buffer));
    COMPARE_BYTES(written(root.data()), again);
}

void tst_VLMC_XMLWriter::writeDevice_needsNoStackForDepth()
{
    runOnSmallStack([] {
        const int levels = 2000;
        const Tree root(newChain(levels));
        const QByteArray document = written(root.data());
        QVERIFY(document.startsWith(QByteArray(kDeclaration) + "<e>\n    <e>\n"));
        QVERIFY(document.endsWith("    </e>\n</e>\n"));
        QCOMPARE(int(document.count("<e>")), levels - 1);
        QCOMPARE(int(document.count("<e/>")), 1);
        QCOMPARE(int(document.count("</e>")), levels - 1);
    });
}

void tst_VLMC_XMLWriter::writePath_refusesTooLargeDocument_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("256 MiB") << kMaxDocumentBytes << true;
    QTest::newRow("256 MiB and a byte") << kMaxDocumentBytes + 1 << false;
}

// A device spares the disk. It is written in place, with the same limit.
void tst_VLMC_XMLWriter::writePath_refusesTooLargeDocument()
{
    QFETCH(int, bytes);
    QFETCH(bool, accepted);
    const Tree root(newDocumentOf(bytes));
    QString path = utf8("/dev/null");
    VLMC_XMLWriter writer;
    QCOMPARE(writer.write(path, root.data()), accepted);
    COMPARE_BYTES(loggedText(), accepted ? "" : "2 VLMC_XMLWriter::write file write error!\n");
}

void tst_VLMC_XMLWriter::writeDevice_takesAnySize()
{
    const Tree root(newDocumentOf(kMaxDocumentBytes + 1));
    CountingDevice device;
    VLMC_XMLWriter writer;
    QVERIFY(writer.write(device, root.data()));
    QCOMPARE(device.bytes(), qint64(kMaxDocumentBytes + 1));
}

void tst_VLMC_XMLWriter::writeXMLNode_writesOneElement()
{
    const Tree node(newTree("a{x=1}0'text'[b]"));
    ElementWriter to;
    QVERIFY(to.writer.writeXMLNode(node.data()));
    // No declaration and no final newline: those are the document's.
    COMPARE_BYTES(to.buffer.data(), "<a x=\"1\">text<b/></a>");
}

void tst_VLMC_XMLWriter::writeXMLNode_refusesNull()
{
    ElementWriter to;
    QVERIFY(!to.writer.writeXMLNode(nullptr));
    COMPARE_BYTES(to.buffer.data(), QByteArray());
    COMPARE_BYTES(loggedText(), "1 [VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.\n");
}

void tst_VLMC_XMLWriter::writeXMLNode_leavesTagsOpenAtANullChild()
{
    const Tree node(newTree("a[b[c0'1' null] never]"));
    ElementWriter to;

    QVERIFY(!to.writer.writeXMLNode(node.data()));

    COMPARE_BYTES(to.buffer.data(), "<a><b><c>1</c>");
    COMPARE_BYTES(loggedText(), "1 [VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.\n");
    to.writer.writeEndDocument();
    COMPARE_BYTES(to.buffer.data().trimmed(), "<a><b><c>1</c></b></a>");
}

void tst_VLMC_XMLWriter::writeXMLNode_writesIntoAnOpenElement()
{
    const Tree node(newTree("a0'text'"));
    ElementWriter to;
    to.writer.writeStartElement(utf8("outer"));

    QVERIFY(to.writer.writeXMLNode(node.data()));
    QVERIFY(to.writer.writeXMLNode(node.data()));
    to.writer.writeEndElement();

    COMPARE_BYTES(to.buffer.data(), "<outer><a>text</a><a>text</a></outer>");
}

void tst_VLMC_XMLWriter::writeXMLNode_needsNoStackForDepth()
{
    runOnSmallStack([] {
        const int levels = 100000;
        const Tree root(newChain(levels));
        ElementWriter to;
        QVERIFY(to.writer.writeXMLNode(root.data()));
        COMPARE_BYTES(to.buffer.data(), QByteArray("<e>").repeated(levels - 1) + "<e/>"
                                            + QByteArray("</e>").repeated(levels - 1));
    });
}

QTEST_GUILESS_MAIN(tst_VLMC_XMLWriter)
#include "tst_VLMC_XMLWriter.moc"
