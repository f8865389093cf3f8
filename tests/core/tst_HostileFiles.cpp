#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>

#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// The limit of a document, the tree, and what the sanitizers add.
const long kSaveKilobytes = 1024 * 1024;

typedef std::unique_ptr<VLMC_XMLNode> Tree;

const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<list docInfo=\"1.0\">\n"
                         "    <entry id=\"000\">\n"
                         "        <name>\xe3\x81\x82 &amp; B</name>\n"
                         "        <value><![CDATA[c < d]]></value>\n"
                         "    </entry>\n"
                         "    <entry id=\"001\">&#x3042;</entry>\n"
                         "</list>\n";

Tree readBytes(const QByteArray &bytes)
{
    const TestDirectory directory;
    QString path = directory.file("document.xml");
    writeFile(path, bytes);
    VLMC_XMLReader reader;
    return Tree(reader.read(path));
}

Tree readDevice(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    Tree root(reader.read(device));
    // The reader may still be asked after its work.
    reader.atEnd();
    return root;
}

// Characters of all texts and attribute values, without recursion.
qint64 charactersIn(VLMC_XMLNode *root)
{
    qint64 total = 0;
    QList<VLMC_XMLNode *> open;
    open.append(root);
    while (!open.isEmpty()) {
        VLMC_XMLNode *const node = open.takeLast();
        total += node->getText().size();
        const QXmlStreamAttributes attributes = node->getAttribute();
        for (const QXmlStreamAttribute &attribute : attributes) {
            total += attribute.value().size();
        }
        open += node->getXMLNodeChildren();
    }
    return total;
}

QByteArray declaring(const QByteArray &entities, const QByteArray &content)
{
    return "<!DOCTYPE r [" + entities + "]><r><first>kept</first>" + content + "</r>";
}

// Grows by as much as is read.
class GrowingDevice : public QBuffer
{
public:
    bool atEnd() const override { return false; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        buffer().append(QByteArray(int(size), 'x'));
        return QBuffer::readData(data, size);
    }
};

// Promises more than it gives.
class ShrinkingDevice : public QBuffer
{
public:
    bool atEnd() const override { return false; }
    qint64 size() const override { return QBuffer::size() + 1000; }
};
} // namespace

class tst_HostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void read_survivesTruncationAnywhere();
    void read_survivesAnyChangedByte();
    void read_givesEmptyNode_data();
    void read_givesEmptyNode();
    void read_keepsWhatPrecedesInvalidUtf8();
    void read_survivesDeclaredEncoding_data();
    void read_survivesDeclaredEncoding();
    void read_refusesWhatIsNoFile_data();
    void read_refusesWhatIsNoFile();
    void read_stopsWhereGrowingFileEnded();
    void read_stopsWhereShrunkFileEnds();
    void read_boundsEntities_data();
    void read_boundsEntities();
    void read_boundsReferencesInOtherEncodings();
    void read_expandsSmallEntities();
    void read_expandsNestedEntities_data();
    void read_expandsNestedEntities();
    void read_expandsWithEncoding_data();
    void read_expandsWithEncoding();
    void read_countsNoBuiltInReferences_data();
    void read_countsNoBuiltInReferences();
    void read_countsEntitiesToTheBound();
    void read_boundsDefaultAttributes_data();
    void read_boundsDefaultAttributes();
    void read_countsDefaultAttributesToTheBound();
    void read_takesDeclarationInTextAsText();
    void write_boundsIndentation_data();
    void write_boundsIndentation();
};

void tst_HostileFiles::read_survivesTruncationAnywhere()
{
    const QByteArray document(kDocument);
    for (int size = 0; size <= document.size(); ++size) {
        const Tree root = readBytes(document.left(size));
        QVERIFY(root.get());
        const bool started = document.left(size).contains("1.0\">");
        QCOMPARE(root->getName(), started ? utf8("list") : QString::fromLatin1(""));
    }
}

void tst_HostileFiles::read_survivesAnyChangedByte()
{
    const QByteArray document(kDocument);
    const QByteArray values("\x00\x01 <>&;\"\x7f\x80\xc3\xff", 12);
    for (int i = 0; i < document.size(); ++i) {
        for (int k = 0; k < values.size(); ++k) {
            QByteArray changed = document;
            changed[i] = values.at(k);
            const Tree root = readDevice(changed);
            QVERIFY(!root || charactersIn(root.get()) < document.size());
        }
    }
}

void tst_HostileFiles::read_givesEmptyNode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zero bytes") << QByteArray(100000, '\0');
    QTest::newRow("one zero byte") << QByteArray(1, '\0');
    QTest::newRow("ones") << QByteArray(100000, '\xff');
    QTest::newRow("blanks") << QByteArray(100000, ' ');
    QTest::newRow("byte-order mark only") << QByteArray("\xef\xbb\xbf");
    QTest::newRow("no element") << QByteArray("<?xml version=\"1.0\"?><!-- -->");
    QTest::newRow("invalid UTF-8 first") << QByteArray("<r>\xff</r>");
    QTest::newRow("endless name") << "<" + QByteArray(1000000, 'a');
}

void tst_HostileFiles::read_givesEmptyNode()
{
    QFETCH(QByteArray, bytes);
    const Tree root = readBytes(bytes);
    QVERIFY(root.get());
    QCOMPARE(root->getName(), QString::fromLatin1(""));
    QVERIFY(root->getXMLNodeChildren().isEmpty());
}

void tst_HostileFiles::read_keepsWhatPrecedesInvalidUtf8()
{
    const Tree root = readBytes("<r>" + QByteArray("<e>x</e>").repeated(3000) + "<e>\xff</e></r>");
    QCOMPARE(root->getName(), utf8("r"));
    QVERIFY(root->getXMLNodeChildren().size() > 1000);
}

void tst_HostileFiles::read_survivesDeclaredEncoding_data()
{
    QTest::addColumn<QByteArray>("encoding");
    const char *const encodings[] = {"UTF-8",        "UTF-16", "UTF-32",  "UTF-7",      "Shift_JIS",
                                     "EUC-JP",       "GBK",    "IBM037",  "ISO-8859-1", "HZ",
                                     "ISO-2022-JP",  "Big5",   "unknown", "",           "UTF-16LE",
                                     "windows-1252", "SCSU",   "CESU-8",  "KOI8-R",     "US-ASCII"};
    for (const char *const encoding : encodings) {
        QTest::newRow(*encoding ? encoding : "none") << QByteArray(encoding);
    }
}

void tst_HostileFiles::read_survivesDeclaredEncoding()
{
    QFETCH(QByteArray, encoding);
    const QByteArray bomb = "<!DOCTYPE r [<!ENTITY e \"" + QByteArray(4000, 'e') + "\">]><r>"
                            + QByteArray("&e;").repeated(5000);
    for (int i = 0; i < 2; ++i) {
        const Tree root = readBytes("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>"
                                    + (i == 0 ? QByteArray("<r>text</r>") : bomb));
        QVERIFY(root.get());
        QVERIFY(charactersIn(root.get()) <= 4096);
    }
}

void tst_HostileFiles::read_refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("folder") << utf8(".");
    QTest::newRow("FIFO") << utf8("fifo");
    QTest::newRow("link to a FIFO") << utf8("link");
    QTest::newRow("device") << utf8("/dev/zero");
}

void tst_HostileFiles::read_refusesWhatIsNoFile()
{
    QFETCH(QString, path);
    const TestDirectory directory;
    QCOMPARE(mkfifo(QFile::encodeName(directory.file("fifo")).constData(), 0600), 0);
    QVERIFY(QFile::link(directory.file("fifo"), directory.file("link")));
    path = QDir(directory.path()).absoluteFilePath(path);
    VLMC_XMLReader reader;
    const Tree root(reader.read(path));
    QCOMPARE(root->getName(), QString::fromLatin1(""));
    COMPARE_BYTES(loggedText(), "2 VLMC_XMLReader::read file open error!\n");
}

void tst_HostileFiles::read_stopsWhereGrowingFileEnded()
{
    GrowingDevice device;
    device.setData("<r><first>kept</first><second>");
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    VLMC_XMLReader reader;
    const Tree root(reader.read(device));
    QCOMPARE(root->getXMLNodeChildren().size(), 2);
    QVERIFY(device.size() < 100000);
}

void tst_HostileFiles::read_stopsWhereShrunkFileEnds()
{
    ShrinkingDevice device;
    device.setData("<r><first>kept</first><second>");
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    VLMC_XMLReader reader;
    const Tree root(reader.read(device));
    QCOMPARE(root->getXMLNodeChildren().size(), 2);
}

void tst_HostileFiles::read_boundsEntities_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray large = "<!ENTITY e \"" + QByteArray(4096, 'e') + "\">";
    const QByteArray padding = "<!--" + QByteArray(10000, ' ') + "-->";
    QByteArray nested = "<!ENTITY e0 \"0123456789\">";
    for (int i = 1; i < 10; ++i) {
        const QByteArray use = "&e" + QByteArray::number(i - 1) + ";";
        nested += "<!ENTITY e" + QByteArray::number(i) + " \"" + use.repeated(10) + "\">";
    }
    QByteArray chain = "<!ENTITY c0 \"x\">";
    for (int i = 1; i < 3000; ++i) {
        chain +=
            "<!ENTITY c" + QByteArray::number(i) + " \"&c" + QByteArray::number(i - 1) + ";\">";
    }
    QTest::newRow("one entity, 20000 uses") << declaring(large, QByteArray("&e;").repeated(20000));
    QTest::newRow("uses in elements") << declaring(large, QByteArray("<i>&e;</i>").repeated(20000));
    QTest::newRow("uses in attributes")
        << declaring(large, QByteArray("<i a='&e;'/>").repeated(20000));
    QTest::newRow("long document type")
        << declaring(padding + large, QByteArray("&e;").repeated(20000));
    QTest::newRow("nested") << declaring(nested, "&e9;");
    QTest::newRow("chain") << declaring(chain, QByteArray("&c2999;").repeated(20000));
    QTest::newRow("recursive") << declaring("<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">", "&a;");
    QTest::newRow("attribute default") << declaring(
        large + "<!ATTLIST r a CDATA \"" + QByteArray("&e;").repeated(20000) + "\">", "");
    QTest::newRow("long declarations") << declaring(
        QByteArray("<!ENTITY x \"" + QByteArray(4000, 'x') + "\">").repeated(10000), "&x;");
    QTest::newRow("built-in name") << declaring("<!ENTITY amp \"" + QByteArray(4000, 'x') + "\">",
                                                QByteArray("&amp;").repeated(20000));
}

void tst_HostileFiles::read_boundsEntities()
{
    QFETCH(QByteArray, document);
    const Tree fromFile = readBytes(document);
    QVERIFY(charactersIn(fromFile.get()) <= 4096 + 20000 + 4);
    const Tree fromDevice = readDevice(document);
    QVERIFY(!fromDevice || charactersIn(fromDevice.get()) <= 4096 + 20000 + 4);
    if (fromFile->getXMLNodeChildren().size() > 0) {
        QCOMPARE(fromFile->getXMLNodeChildren().first()->getText(), utf8("kept"));
    }
}

// UTF-7 spells "&" as "+ACY-". Qt without that encoding gives no root.
void tst_HostileFiles::read_boundsReferencesInOtherEncodings()
{
    const Tree root = readBytes("<?xml version=\"1.0\" encoding=\"UTF-7\"?>"
                                + declaring("<!ENTITY e \"" + QByteArray(4000, 'e') + "\">",
                                            QByteArray("+ACY-e;").repeated(5000)));
    QVERIFY(charactersIn(root.get()) <= 4096);
}

void tst_HostileFiles::read_expandsSmallEntities()
{
    const Tree root = readBytes(declaring("<!ENTITY a \"one\"><!ENTITY b \"&a; two\">",
                                          "<i x=\"&a;\">&b; &amp; &#65;</i><j/>"));
    QCOMPARE(root->getXMLNodeChildren().size(), 3);
    VLMC_XMLNode *const node = root->getXMLNodeChildren().at(1);
    QCOMPARE(node->getText(), utf8("one two & A"));
    QCOMPARE(node->getAttribute().value(utf8("x")).toString(), utf8("one"));
}

// One in the other, the outermost declared first.
void tst_HostileFiles::read_expandsNestedEntities_data()
{
    QTest::addColumn<int>("nesting");
    QTest::addColumn<QString>("text");
    for (int nesting = 1; nesting <= 8; ++nesting) {
        QTest::newRow(QByteArray::number(nesting).constData()) << nesting << utf8("deep");
    }
    QTest::newRow("too deep") << 9 << utf8("");
}

void tst_HostileFiles::read_expandsNestedEntities()
{
    QFETCH(int, nesting);
    QFETCH(QString, text);
    QByteArray entities;
    for (int i = 0; i < nesting; ++i) {
        entities +=
            "<!ENTITY e" + QByteArray::number(i) + " \"&e" + QByteArray::number(i + 1) + ";\">";
    }
    entities += "<!ENTITY e" + QByteArray::number(nesting) + " \"deep\">";
    const Tree root = readBytes(declaring(entities, "<i>&e0;</i>"));
    QCOMPARE(root->getXMLNodeChildren().size(), 2);
    QCOMPARE(root->getXMLNodeChildren().at(1)->getText(), text);
}

void tst_HostileFiles::read_expandsWithEncoding_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::newRow("capitals") << QByteArray("UTF-8");
    QTest::newRow("small letters") << QByteArray("utf-8");
    QTest::newRow("both") << QByteArray("Utf-8");
}

void tst_HostileFiles::read_expandsWithEncoding()
{
    QFETCH(QByteArray, encoding);
    const Tree root = readBytes("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>"
                                + declaring("<!ENTITY e \"text\">", "<i>&e;</i>"));
    QCOMPARE(root->getXMLNodeChildren().size(), 2);
    QCOMPARE(root->getXMLNodeChildren().at(1)->getText(), utf8("text"));
}

void tst_HostileFiles::read_countsNoBuiltInReferences_data()
{
    QTest::addColumn<QByteArray>("reference");
    const char *const references[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#65;"};
    for (const char *const reference : references) {
        QTest::newRow(reference) << QByteArray(reference);
    }
}

// However many, and however long the entities are that are declared beside them.
void tst_HostileFiles::read_countsNoBuiltInReferences()
{
    QFETCH(QByteArray, reference);
    const QByteArray entity = "<!ENTITY e \"" + QByteArray(4000, 'e') + "\">";
    const Tree root =
        readBytes(declaring(entity, "<i>" + reference.repeated(5000) + "</i><j>&e;</j>"));
    QCOMPARE(root->getXMLNodeChildren().size(), 3);
    QCOMPARE(root->getXMLNodeChildren().at(1)->getText().size(), 5000);
    QCOMPARE(root->getXMLNodeChildren().at(2)->getText().size(), 4000);
}

void tst_HostileFiles::read_boundsDefaultAttributes_data()
{
    QTest::addColumn<QByteArray>("attributes");

    QTest::newRow("a long value") << "a CDATA \"" + QByteArray(20000, 'v') + '"';
    QByteArray many;
    for (int i = 0; i < 2000; ++i) {
        many += " a" + QByteArray::number(i) + " CDATA \"v\"";
    }
    QTest::newRow("many short ones") << many;
}

void tst_HostileFiles::read_boundsDefaultAttributes()
{
    QFETCH(QByteArray, attributes);
    const Tree root =
        readBytes("<!DOCTYPE r [<!ATTLIST e " + attributes + ">]><r><first>kept</first>"
                  + QByteArray("<e/>").repeated(5000) + "</r>");
    QCOMPARE(root->getName(), utf8("r"));
    QCOMPARE(root->getXMLNodeChildren().size(), 1);
    QCOMPARE(root->getXMLNodeChildren().first()->getText(), utf8("kept"));
}

// Those that an element has itself do not count.
void tst_HostileFiles::read_countsDefaultAttributesToTheBound()
{
    const QByteArray start = "<!DOCTYPE r [<!ATTLIST e a CDATA \"" + QByteArray(1023, 'v')
                             + "\">]><r>"
                             + QByteArray("<e a=\"" + QByteArray(2000, 'o') + "\"/>").repeated(9)
                             + QByteArray("<e/>").repeated(4);
    QCOMPARE(readBytes(start + "<j/></r>")->getXMLNodeChildren().size(), 14);
    QCOMPARE(readBytes(start + "<e/><j/></r>")->getXMLNodeChildren().size(), 13);
}

void tst_HostileFiles::read_countsEntitiesToTheBound()
{
    const QByteArray entity = "<!ENTITY e \"" + QByteArray(1024, 'e') + "\">";
    const Tree atBound =
        readBytes(declaring(entity, QByteArray("<i>&e;</i>").repeated(4) + "<j/>"));
    QCOMPARE(atBound->getXMLNodeChildren().size(), 6);
    const Tree beyond =
        readBytes(declaring(entity, QByteArray("<i>&e;</i>").repeated(4) + "<i>&e;</i>" + "<j/>"));
    QCOMPARE(beyond->getXMLNodeChildren().size(), 6);
    QCOMPARE(beyond->getXMLNodeChildren().at(4)->getText().size(), 1024);
    QCOMPARE(beyond->getXMLNodeChildren().at(5)->getText(), QString::fromLatin1(""));
}

void tst_HostileFiles::read_takesDeclarationInTextAsText()
{
    const QByteArray text = "<!DOCTYPE x [<!ENTITY e \"" + QByteArray(100000, 'e') + "\">]>";
    const Tree root = readBytes("<r><a><![CDATA[" + text + "]]></a><b>"
                                + QByteArray("&amp;").repeated(5000) + "</b></r>");
    QCOMPARE(root->getXMLNodeChildren().size(), 2);
    QCOMPARE(root->getXMLNodeChildren().at(0)->getText().size(), text.size());
    QCOMPARE(root->getXMLNodeChildren().at(1)->getText().size(), 5000);
}

void tst_HostileFiles::write_boundsIndentation_data()
{
    QTest::addColumn<int>("levels");
    // 175 KB, which would come to 14 GB.
    QTest::newRow("too large before the last start tag") << 58333;
    QTest::newRow("too large behind it") << 9000;
}

// In a process of its own, for the memory it takes.
void tst_HostileFiles::write_boundsIndentation()
{
    QFETCH(int, levels);
    const TestDirectory directory;
    const QString path = directory.file("deep.xml");
    const QByteArray document = QByteArray("<a>").repeated(levels);
    writeFile(path, document);
    const pid_t child = fork();
    if (child == 0) {
        VLMC_XMLReader reader;
        QString file = path;
        VLMC_XMLNode *const root = reader.read(file);
        VLMC_XMLWriter writer;
        const bool refused = !writer.write(file, root);
        const bool told = loggedText() == "2 VLMC_XMLWriter::write file write error!\n";
        _exit(refused && told ? 0 : 1);
    }
    int status = 0;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    QCOMPARE(status, 0);
    QVERIFY(usage.ru_maxrss < kSaveKilobytes);
    COMPARE_BYTES(readFile(path), document);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

QTEST_GUILESS_MAIN(tst_HostileFiles)
#include "tst_HostileFiles.moc"
