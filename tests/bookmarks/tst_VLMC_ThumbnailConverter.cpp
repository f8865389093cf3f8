#include "bookmarks/VLMC_ThumbnailConverter.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QPointer>
#include <QtGui/QImage>

#include <sys/stat.h>
#include <unistd.h>

namespace
{
const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const char kEmptyLine[] = "1 [VLMC_ThumbnailConverter] thumbnail is empty.\n";
const char kReadLine[] = "1 [VLMC_ThumbnailConverter] Couldn't open thumbnail for reading.\n";
const char kWriteLine[] = "1 [VLMC_ThumbnailConverter] Couldn't open thumbnail for writing.\n";

// Steps into a conversion where an override can.
class SteppedConverter : public VLMC_ThumbnailConverter
{
public:
    SteppedConverter() : refusesNodes(false), nullAt(-1) {}

    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text, char &textType,
                              QXmlStreamAttributes &attributes, char prepend) override
    {
        added += name.toUtf8() + ":" + QByteArray::number(int(textType)) + " ";
        if (refusesNodes) {
            return nullptr;
        }
        if (parent && !removed.isEmpty()) {
            QFile::remove(removed);
        }
        return VLMC_XMLSetting::addXMLChild(parent, name, text, textType, attributes, prepend);
    }
    void load(QString &path) override
    {
        VLMC_XMLSetting::load(path);
        if (nullAt >= 0) {
            root->getXMLNodeChildren().insert(nullAt, static_cast<VLMC_XMLNode *>(nullptr));
        }
    }

    bool refusesNodes;
    int nullAt;
    QString removed;
    QByteArray added;
};

QByteArray packedImage(const QByteArray &src, const QByteArray &text)
{
    return "    <image src=\"" + src + "\"><![CDATA[" + text + "]]></image>\n";
}

QByteArray packed(const QByteArray &images)
{
    return QByteArray(kDeclaration) + "<thumbnail docInfo=\"1.0\">\n" + images + "</thumbnail>\n";
}

// What a load logs, the lines of the images, and the end.
QByteArray unpackingLog(const QByteArray &lines, const void *root)
{
    return "3 [VLMC_XMLSetting::loadBookmark] start\n3 [VLMC_XMLSetting::loadBookmark] end\n"
           + lines + "3 [VLMC_XMLSetting::deleteAllXMLNode] " + hexAddress(root) + "\n";
}

// As loggedText(), with addresses replaced by "0x".
QByteArray logWithoutAddress()
{
    QByteArray log = loggedText();
    const int at = int(log.lastIndexOf("0x"));
    return at < 0 ? log : log.left(at) + "0x0\n";
}
} // namespace

class tst_VLMC_ThumbnailConverter : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void getInstance_givesOneConverter();
    void convertThumbnailPngToXML_packsInDescendingOrder();
    void convertThumbnailPngToXML_listsPngFilesOnly();
    void convertThumbnailPngToXML_writesEmptyRoot();
    void convertThumbnailPngToXML_packsUnreadableAsEmpty();
    void convertThumbnailPngToXML_refusesNull();
    void convertThumbnailPngToXML_endsWithoutRootNode();
    void convertThumbnailPngToXML_releasesTheDocumentBefore();
    void convertThumbnailXMLToPng_refusesNull();
    void convertThumbnailXMLToPng_readsBackRealImages();
    void convertThumbnailXMLToPng_takesEachImage_data();
    void convertThumbnailXMLToPng_takesEachImage();
    void convertThumbnailXMLToPng_staysInTheDirectory();
    void convertThumbnailXMLToPng_stopsAtNull();
    void convertThumbnailXMLToPng_endsWithoutRoot();
    void encode_base64_readsWholeFiles();
    void decode_base64_writesWholeFiles();
    void decode_base64_keepsThePictureFromNoBase64();
    void decode_base64_followsNoLink();
    void encode_base64_limitsBytes_data();
    void encode_base64_limitsBytes();
    void base64_doesNotWaitForAFifo();
    void setThumbnail_appendsAnImage();
    void getFileList_listsAsQDir();
};

void tst_VLMC_ThumbnailConverter::getInstance_givesOneConverter()
{
    VLMC_ThumbnailConverter *const first = VLMC_ThumbnailConverter::getInstance();
    QVERIFY(first);
    QCOMPARE(VLMC_ThumbnailConverter::getInstance(), first);
    QVERIFY(!first->getXMLRootNode());
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_packsInDescendingOrder()
{
    TestDirectory directory;
    writeFile(directory.file("000001.PNG"), "one");
    writeFile(directory.file("000002.PNG"), QByteArray("\0\xff", 2));
    writeFile(directory.file("000003.PNG"), QByteArray());
    SteppedConverter converter;
    converter.createXMLRootNode();

    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));

    COMPARE_BYTES(readFile(directory.file("packed.xml")),
                  packed("    <image src=\"000003.PNG\"/>\n" + packedImage("000002.PNG", "AP8=")
                         + packedImage("000001.PNG", "b25l")));
    COMPARE_BYTES(converter.added, "thumbnail:0 image:1 image:1 image:1 ");
    COMPARE_BYTES(logWithoutAddress(), "3 [VLMC_XMLSetting::save] start\n"
                                       "3 [VLMC_XMLSetting::saveBookmark] end\n"
                                       "3 [VLMC_XMLSetting::deleteAllXMLNode] 0x0\n");
    QVERIFY(converter.getXMLRootNode());
    QCOMPARE(converter.getXMLRootNode()->getName(), QString::fromLatin1(""));
    QCOMPARE(converter.getXMLNodeCnt(), 0);
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_listsPngFilesOnly()
{
    TestDirectory directory;
    writeFile(directory.file("a.png"), "a");
    writeFile(directory.file("B.PnG"), "b");
    writeFile(directory.file("c.PNG.txt"), "c");
    writeFile(directory.file(".d.png"), "d");
    QVERIFY(QDir().mkdir(directory.file("e.png")));
    QCOMPARE(symlink("a.png", directory.localFile("f.png")), 0);
    QCOMPARE(symlink("nowhere", directory.localFile("g.png")), 0);
    QCOMPARE(mkfifo(directory.localFile("h.png"), 0600), 0);
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));
    COMPARE_BYTES(readFile(directory.file("packed.xml")),
                  packed(packedImage("a.png", "YQ==") + packedImage("B.PnG", "Yg==")));
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_writesEmptyRoot()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    const QByteArray empty = QByteArray(kDeclaration) + "<thumbnail docInfo=\"1.0\"/>\n";
    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));
    COMPARE_BYTES(readFile(directory.file("packed.xml")), empty);
    converter.convertThumbnailPngToXML(directory.localFile("missing/"),
                                       directory.localFile("other.xml"));
    COMPARE_BYTES(readFile(directory.file("other.xml")), empty);
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_packsUnreadableAsEmpty()
{
    TestDirectory directory;
    writeFile(directory.file("1.png"), "one");
    writeFile(directory.file("2.png"), "two");
    writeFile(directory.file("3.png"), "three");
    SteppedConverter converter;
    converter.removed = directory.file("2.png");
    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));
    COMPARE_BYTES(readFile(directory.file("packed.xml")),
                  packed(packedImage("3.png", "dGhyZWU=") + "    <image src=\"2.png\"/>\n"
                         + packedImage("1.png", "b25l")));
    QVERIFY(loggedText().startsWith(kReadLine));
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_refusesNull()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    const QByteArray line =
        "1 [VLMC_ThumbnailConverter::convertThumbnailPngToXML] Invalid Parameter.\n";
    converter.convertThumbnailPngToXML(nullptr, directory.localFile("packed.xml"));
    COMPARE_BYTES(loggedText(), line);
    converter.convertThumbnailPngToXML(directory.localFile(), nullptr);
    COMPARE_BYTES(loggedText(), line);
    QVERIFY(!exists(directory.file("packed.xml")));
    QVERIFY(!converter.getXMLRootNode());
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_endsWithoutRootNode()
{
    TestDirectory directory;
    SteppedConverter converter;
    converter.refusesNodes = true;
    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));
    QVERIFY(!exists(directory.file("packed.xml")));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_ThumbnailConverter::convertThumbnailPngToXML_releasesTheDocumentBefore()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    converter.createXMLRootNode();
    const QPointer<QObject> before(converter.getXMLRootNode());
    converter.convertThumbnailPngToXML(directory.localFile(), directory.localFile("packed.xml"));
    QVERIFY(before);
    runDeferredDeletes();
    QVERIFY(!before);
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_refusesNull()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    const QByteArray line =
        "1 [VLMC_ThumbnailConverter::convertThumbnailXMLToPng] Invalid Parameter.\n";
    converter.convertThumbnailXMLToPng(nullptr, directory.localFile());
    COMPARE_BYTES(loggedText(), line);
    converter.convertThumbnailXMLToPng(directory.localFile("packed.xml"), nullptr);
    COMPARE_BYTES(loggedText(), line);
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_readsBackRealImages()
{
    TestDirectory from;
    TestDirectory to;
    QImage image(40, 30, QImage::Format_ARGB32);
    image.fill(0x80ff8000u);
    image.setPixel(1, 2, 0xff000001u);
    QVERIFY(image.save(from.file("000001.PNG"), "PNG"));
    writeFile(to.file("000001.PNG"), QByteArray(100000, 'x'));
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailPngToXML(from.localFile(), from.localFile("packed.xml"));
    converter.convertThumbnailXMLToPng(from.localFile("packed.xml"), to.localFile());
    COMPARE_BYTES(readFile(to.file("000001.PNG")), readFile(from.file("000001.PNG")));
    QImage read;
    QVERIFY(read.load(to.file("000001.PNG"), "PNG"));
    QCOMPARE(read.convertToFormat(QImage::Format_ARGB32), image);
    QCOMPARE(converter.getXMLNodeCnt(), 0);
    QCOMPARE(converter.getXMLRootNode()->getName(), QString::fromLatin1(""));
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_takesEachImage_data()
{
    QTest::addColumn<QByteArray>("images");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("files"); // besides last.png
    QTest::newRow("good") << packedImage("a.png", "b25l") << QByteArray() << QByteArray("a.png");
    QTest::newRow("empty text") << QByteArray("<image src=\"a.png\"><![CDATA[]]></image>")
                                << QByteArray(kEmptyLine) << QByteArray();
    QTest::newRow("empty text before a bad name")
        << QByteArray("<image src=\"../a.png\"><![CDATA[]]></image>") << QByteArray(kEmptyLine)
        << QByteArray();
    QTest::newRow("no text") << QByteArray("<image src=\"a.png\"/>") << QByteArray()
                             << QByteArray();
    QTest::newRow("plain text") << QByteArray("<image src=\"a.png\">b25l</image>") << QByteArray()
                                << QByteArray();
    QTest::newRow("another name") << QByteArray("<img src=\"a.png\"><![CDATA[b25l]]></img>")
                                  << QByteArray() << QByteArray();
    QTest::newRow("no src") << QByteArray("<image><![CDATA[b25l]]></image>")
                            << QByteArray(kWriteLine) << QByteArray();
    QTest::newRow(".") << packedImage(".", "b25l") << QByteArray(kWriteLine) << QByteArray();
    QTest::newRow("..") << packedImage("..", "b25l") << QByteArray(kWriteLine) << QByteArray();
    QTest::newRow("folder's file")
        << packedImage("sub/a.png", "b25l") << QByteArray(kWriteLine) << QByteArray();
    QTest::newRow("no path") << packedImage("./a.png", "b25l") << QByteArray(kWriteLine)
                             << QByteArray();
    QTest::newRow("dots in a name")
        << packedImage("..a.png", "b25l") << QByteArray() << QByteArray("..a.png");
    QTest::newRow("a folder") << packedImage("sub", "b25l") << QByteArray(kWriteLine)
                              << QByteArray();
    QTest::newRow("nothing decoded")
        << packedImage("a.png", "!") << QByteArray() << QByteArray("a.png");
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_takesEachImage()
{
    QFETCH(QByteArray, images);
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, files);
    TestDirectory directory;
    QVERIFY(QDir().mkpath(directory.file("out/sub")));
    writeFile(directory.file("packed.xml"), packed(images + packedImage("last.png", "b25l")));
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailXMLToPng(directory.localFile("packed.xml"),
                                       directory.localFile("out/"));
    COMPARE_BYTES(logWithoutAddress(), unpackingLog(lines, nullptr));
    QStringList found = QDir(directory.file("out")).entryList(QDir::Files | QDir::Hidden);
    QVERIFY(found.removeOne(utf8("last.png")));
    COMPARE_BYTES(found.join(utf8(",")).toUtf8(), files);
    COMPARE_BYTES(readFile(directory.file("out/last.png")), "one");
    QVERIFY(QDir(directory.file("out/sub")).entryList(QDir::Files).isEmpty());
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_staysInTheDirectory()
{
    TestDirectory directory;
    QVERIFY(QDir().mkdir(directory.file("out")));
    writeFile(directory.file("victim.png"), "untouched");
    writeFile(directory.file("packed.xml"),
              packed(packedImage("../victim.png", "b25l")
                     + packedImage(directory.file("new.png").toUtf8(), "b25l")));
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailXMLToPng(directory.localFile("packed.xml"),
                                       directory.localFile("out/"));
    COMPARE_BYTES(logWithoutAddress(), unpackingLog(QByteArray(kWriteLine) + kWriteLine, nullptr));
    COMPARE_BYTES(readFile(directory.file("victim.png")), "untouched");
    QVERIFY(!exists(directory.file("new.png")));
    // Dots are no names even where they would not lead to a folder.
    writeFile(directory.file("packed.xml"),
              packed(packedImage(".", "b25l") + packedImage("..", "b25l")));
    converter.convertThumbnailXMLToPng(directory.localFile("packed.xml"),
                                       directory.localFile("out/a"));
    QVERIFY(QDir(directory.file("out")).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_stopsAtNull()
{
    TestDirectory directory;
    writeFile(directory.file("packed.xml"),
              packed(packedImage("a.png", "b25l") + packedImage("b.png", "b25l")));
    SteppedConverter converter;
    converter.nullAt = 1;
    converter.convertThumbnailXMLToPng(directory.localFile("packed.xml"), directory.localFile());
    COMPARE_BYTES(logWithoutAddress(),
                  unpackingLog("1 [VLMC_ThumbnailConverter] XMLNode is Null.\n", nullptr));
    QVERIFY(exists(directory.file("a.png")));
    QVERIFY(!exists(directory.file("b.png")));
}

void tst_VLMC_ThumbnailConverter::convertThumbnailXMLToPng_endsWithoutRoot()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    char noPath[] = "";
    converter.convertThumbnailXMLToPng(noPath, directory.localFile());
    COMPARE_BYTES(loggedText(), "2 [VLMC_XMLSetting::load] Path is NULL or empty.\n");
    QVERIFY(!converter.getXMLRootNode());
}

void tst_VLMC_ThumbnailConverter::encode_base64_readsWholeFiles()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QString file = directory.file("a");
    writeFile(file, QByteArray(100, '\xfb'));
    QByteArray out = "old";
    converter.encode_base64(file, out);
    COMPARE_BYTES(out, QByteArray(100, '\xfb').toBase64());
    QCOMPARE(loggedText(), QByteArray());
    QString missing = directory.file("missing");
    out = "old";
    converter.encode_base64(missing, out);
    COMPARE_BYTES(out, "old");
    COMPARE_BYTES(loggedText(), kReadLine);
}

void tst_VLMC_ThumbnailConverter::decode_base64_writesWholeFiles()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QVERIFY(QDir().mkdir(directory.file("sub")));
    QByteArray text = "b25l";
    // Any path will do here.
    QString file = directory.file("sub/../a");
    writeFile(file, "longer than before");
    QVERIFY(converter.decode_base64(text, file));
    COMPARE_BYTES(readFile(directory.file("a")), "one");
    QCOMPARE(loggedText(), QByteArray());
    QString missing = directory.file("missing/a");
    QVERIFY(!converter.decode_base64(text, missing));
    COMPARE_BYTES(loggedText(), kWriteLine);
    QByteArray empty;
    QVERIFY(!converter.decode_base64(empty, missing));
    COMPARE_BYTES(loggedText(), kEmptyLine);
    QVERIFY(!converter.decode_base64(empty, file));
    COMPARE_BYTES(loggedText(), kEmptyLine);
    COMPARE_BYTES(readFile(directory.file("a")), "one");
}

void tst_VLMC_ThumbnailConverter::decode_base64_keepsThePictureFromNoBase64()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QByteArray text = "!!!!";
    QString file = directory.file("a.png");
    writeFile(file, "picture");
    QVERIFY(!converter.decode_base64(text, file));
    COMPARE_BYTES(loggedText(), kEmptyLine);
    COMPARE_BYTES(readFile(file), "picture");
    writeFile(file, "");
    QVERIFY(converter.decode_base64(text, file));
    QString missing = directory.file("b.png");
    QVERIFY(converter.decode_base64(text, missing));
    COMPARE_BYTES(readFile(missing), "");
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_ThumbnailConverter::decode_base64_followsNoLink()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QByteArray text = "b25l";
    writeFile(directory.file("victim"), "untouched");
    QCOMPARE(symlink("victim", directory.localFile("a.png")), 0);
    QCOMPARE(symlink("new", directory.localFile("b.png")), 0);
    QString file = directory.file("a.png");
    QVERIFY(!converter.decode_base64(text, file));
    QString dangling = directory.file("b.png");
    QVERIFY(!converter.decode_base64(text, dangling));
    COMPARE_BYTES(loggedText(), QByteArray(kWriteLine) + kWriteLine);
    COMPARE_BYTES(readFile(directory.file("victim")), "untouched");
    QVERIFY(!exists(directory.file("new")));
}

void tst_VLMC_ThumbnailConverter::encode_base64_limitsBytes_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<bool>("read");
    const qint64 limit = qint64(16) * 1024 * 1024;
    QTest::newRow("16 MiB") << limit << true;
    QTest::newRow("a byte more") << limit + 1 << false;
    QTest::newRow("700 MB") << qint64(700) * 1000 * 1000 << false;
}

void tst_VLMC_ThumbnailConverter::encode_base64_limitsBytes()
{
    QFETCH(qint64, bytes);
    QFETCH(bool, read);
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QString path = directory.file("a.png");
    writeFile(path, "");
    QVERIFY(QFile::resize(path, bytes));
    QByteArray out = "old";
    converter.encode_base64(path, out);
    COMPARE_BYTES(loggedText(), read ? "" : kReadLine);
    QCOMPARE(int(out.size()), read ? int((bytes + 2) / 3 * 4) : 3);
}

void tst_VLMC_ThumbnailConverter::base64_doesNotWaitForAFifo()
{
    TestDirectory directory;
    VLMC_ThumbnailConverter converter;
    QCOMPARE(mkfifo(directory.localFile("a.png"), 0600), 0);
    QString file = directory.file("a.png");
    QByteArray text = "b25l";
    converter.encode_base64(file, text);
    COMPARE_BYTES(text, "b25l");
    QVERIFY(!converter.decode_base64(text, file));
    COMPARE_BYTES(loggedText(), QByteArray(kReadLine) + kWriteLine);
}

void tst_VLMC_ThumbnailConverter::setThumbnail_appendsAnImage()
{
    VLMC_ThumbnailConverter converter;
    VLMC_XMLNode parent(nullptr, 0);
    QString text = utf8("t");
    QString src = utf8("s");
    converter.setThumbnail(text, src, &parent);
    QCOMPARE(loggedText(), QByteArray());
    QCOMPARE(int(parent.getXMLNodeChildren().size()), 1);
    VLMC_XMLNode *const image = parent.getXMLNodeChildren().at(0);
    QCOMPARE(image->getName(), utf8("image"));
    QCOMPARE(image->getText(), text);
    QCOMPARE(int(image->getTextType()), 1);
    QCOMPARE(int(image->getAttribute().size()), 1);
    QCOMPARE(image->getAttribute().value(utf8("src")).toString(), src);
    converter.setThumbnail(text, src, nullptr);
    COMPARE_BYTES(loggedText(),
                  "1 [VLMC_ThumbnailConverter::setThumbnail] pc_XMLRootNode is Null.\n");
}

void tst_VLMC_ThumbnailConverter::getFileList_listsAsQDir()
{
    TestDirectory directory;
    writeFile(directory.file("a.x"), "");
    writeFile(directory.file("b.x"), "");
    writeFile(directory.file("c.y"), "");
    VLMC_ThumbnailConverter converter;
    QString dir = directory.path();
    QStringList filters(utf8("*.x"));
    QCOMPARE(converter.getFileList(dir, filters, QDir::Files, QDir::Name),
             QStringList() << utf8("a.x") << utf8("b.x"));
}

QTEST_GUILESS_MAIN(tst_VLMC_ThumbnailConverter)
#include "tst_VLMC_ThumbnailConverter.moc"
