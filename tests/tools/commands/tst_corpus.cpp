// velmora-profile on the documents that the fuzz targets begin with: whatever a file holds, the
// tool ends with a status that its manual names, and repair() leaves a copy.

#include "tests/tools/Tool.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>

class tst_corpus : public QObject
{
    Q_OBJECT

private slots:
    void documents_endWithAStatus_data();
    void documents_endWithAStatus();
    void cookieFiles_endWithAStatus_data();
    void cookieFiles_endWithAStatus();
    void packedThumbnails_stayInTheProfile_data();
    void packedThumbnails_stayInTheProfile();
    void longDamage_takesNoTime_data();
    void longDamage_takesNoTime();
    void percentSigns_standAsTheyAre();
};

namespace
{
const char *const kDocuments[] = {"repostry.xml", "repostry_private.xml", "bookmark.xml",
                                  "visit.xml",    "authinfo.xml",         "fontlist.xml",
                                  "cookie.xml"};

// Bytes of an input of fuzz_stores that choose a store and a change, and of fuzz_cookie_ini that
// tell a file from the value in one.
const int kStoreBytes = 3;
const int kIniBytes = 1;

QDir corpus(const char *target) { return QDir(utf8(FUZZ_CORPUS "/") + utf8(target)); }

// A row for each input of the target that no other row has, without the bytes in front that choose
// something.
void addInputs(const char *target, int choiceBytes, bool alsoCut, QList<QByteArray> *added)
{
    const QDir folder = corpus(target);
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        const QByteArray input = readFile(folder.filePath(name)).mid(choiceBytes);
        const QByteArray row = QByteArray(target) + '/' + name.toUtf8();
        if (added->contains(input)) {
            continue;
        }
        added->append(input);
        QTest::newRow(row.constData()) << input;
        if (alsoCut) {
            QTest::newRow((row + ", cut").constData()) << input.left(input.size() * 2 / 3);
        }
    }
    if (names.isEmpty()) {
        QTest::qFail("the corpus is missing", __FILE__, __LINE__);
    }
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QMap<QString, QByteArray> filesIn(const TestDirectory &directory)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(directory.path()).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        files.insert(name, readFile(directory.path() + name));
    }
    return files;
}

bool isCopied(const QMap<QString, QByteArray> &files, const QString &name,
              const QByteArray &content)
{
    const QRegularExpression dated(
        utf8("^%1\\.[0-9]{8}-[0-9]{6}\\.bak$").arg(QRegularExpression::escape(name)));
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (dated.match(file.key()).hasMatch() && file.value() == content) {
            return true;
        }
    }
    return false;
}

// The commands that only look.
void look(const TestDirectory &directory, const TestDirectory &good)
{
    const QByteArray before = contentsOf(directory.path());
    QCOMPARE(runTool(directory, "show %").status, 0);
    QCOMPARE(runTool(directory, "check %").status, 1);
    QCOMPARE(runTool(directory, "report % -o -").status, 0);
    QCOMPARE(runTool({utf8("diff"), directory.path(), good.path()}).status, 1);
    const int status = runTool(directory, "repair % --dry-run").status;
    QVERIFY2(status == 0 || status == 1, QByteArray::number(status).constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

// A file is as it was, or there is a copy of what it was; and nothing is left to repair.
void repair(const TestDirectory &directory)
{
    const QMap<QString, QByteArray> before = filesIn(directory);
    const ToolRun run = runTool(directory, "repair %");
    QVERIFY2(run.status == 0 || run.status == 1, run.errors.constData());
    const QMap<QString, QByteArray> after = filesIn(directory);
    for (auto file = before.begin(); file != before.end(); ++file) {
        QVERIFY2(after.value(file.key()) == file.value()
                     || isCopied(after, file.key(), file.value()),
                 qPrintable(file.key()));
    }
    COMPARE_RUN(runTool(directory, "repair %"), 0, "nothing to repair\n", "");
}
} // namespace

void tst_corpus::documents_endWithAStatus_data()
{
    QTest::addColumn<QByteArray>("document");
    QList<QByteArray> added;
    addInputs("fuzz_reader", 0, true, &added);
    addInputs("fuzz_stores", kStoreBytes, true, &added);
    addInputs("fuzz_thumbnails", 0, false, &added);
}

// As all documents of a profile at once: each is read on its own.
void tst_corpus::documents_endWithAStatus()
{
    QFETCH(QByteArray, document);
    const TestDirectory good;
    writeGoodProfile(good);
    const TestDirectory directory;
    for (const char *const name : kDocuments) {
        writeFile(directory.file(name), document);
    }
    look(directory, good);
    repair(directory);
}

void tst_corpus::cookieFiles_endWithAStatus_data()
{
    QTest::addColumn<QByteArray>("input");
    QList<QByteArray> added;
    addInputs("fuzz_cookie_ini", 0, true, &added);
    QTest::newRow("a list without end")
        << QByteArray("0[Cookie]\ncookies=\"@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\"\n");
    QTest::newRow("lists in lists") << QByteArray("0[Cookie]\ncookies=\"@Variant(")
                                           + QByteArray("\\0\\0\\0\\t\\0\\0\\0\\x1").repeated(5000)
                                           + ")\"\n";
    QTest::newRow("no INI") << QByteArray("0=[\0]\xff", 6);
}

void tst_corpus::cookieFiles_endWithAStatus()
{
    QFETCH(QByteArray, input);
    const TestDirectory good;
    writeGoodProfile(good);
    const TestDirectory directory;
    const QString path = directory.file("cookie.ini");
    if (input.startsWith('1')) {
        QSettings(path, QSettings::IniFormat)
            .setValue(utf8("Cookie/cookies"), input.mid(kIniBytes));
    } else {
        writeFile(path, input.mid(kIniBytes));
    }
    look(directory, good);
    repair(directory);
}

void tst_corpus::packedThumbnails_stayInTheProfile_data()
{
    QTest::addColumn<QByteArray>("packed");
    QList<QByteArray> added;
    addInputs("fuzz_thumbnails", 0, true, &added);
    addInputs("fuzz_reader", 0, false, &added);
}

void tst_corpus::packedThumbnails_stayInTheProfile()
{
    QFETCH(QByteArray, packed);
    const TestDirectory outside;
    QVERIFY(QDir(outside.path()).mkdir(utf8("profile")));
    writeFile(outside.file("packed.xml"), packed);
    const int status = runTool(outside, "thumbnails unpack %profile %packed.xml").status;
    QVERIFY(status == 0 || status == 2);
    QCOMPARE(namesIn(outside.path()), QStringList({utf8("packed.xml"), utf8("profile")}));
    const QStringList inside = namesIn(outside.file("profile"));
    QVERIFY2(inside.isEmpty() || inside == QStringList(utf8("thumbnail")),
             qPrintable(inside.join(utf8(" "))));
    QCOMPARE(runTool(outside, "thumbnails list %profile").status, 0);
}

void tst_corpus::longDamage_takesNoTime_data()
{
    QTest::addColumn<QByteArray>("document");
    const int count = 5000;
    QTest::newRow("starts and one end")
        << "<fontlist>" + QByteArray("<font>").repeated(count) + "</font>";
    QTest::newRow("starts that break off") << "<fontlist>" + QByteArray("<font ").repeated(count);
    QTest::newRow("ends") << QByteArray("</font>\n").repeated(3 * count);
    QTest::newRow("comments without end") << QByteArray("<!-- <font").repeated(count);
    QTest::newRow("sections without end") << QByteArray("<![CDATA[").repeated(count);
}

// Time in proportion to the document: seconds, were it to the square.
void tst_corpus::longDamage_takesNoTime()
{
    QFETCH(QByteArray, document);
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), document);
    QElapsedTimer timer;
    timer.start();
    const ToolRun run = runTool(directory, "repair % --dry-run");
    QVERIFY2(run.status == 0 || run.status == 1, run.errors.constData());
    const qint64 once = timer.restart();
    writeFile(directory.file("fontlist.xml"), document.repeated(4));
    runTool(directory, "repair % --dry-run");
    const qint64 fourTimes = timer.elapsed();
    QVERIFY2(fourTimes < 10 * once + 500, QByteArray::number(fourTimes).constData());
}

void tst_corpus::percentSigns_standAsTheyAre()
{
    const TestDirectory directory;
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark id=\"000\"><href>" + QByteArray(257, 'u')
                  + "</href><title>%1%2%3%4</title><thumbnail/></bookmark>"
                    "<bookmark><title>%1%2%3</title>");
    QVERIFY(
        runTool(directory, "check %")
            .output.contains(
                "bookmark.xml: entry 0 (%1%2%3%4): href has 257 bytes, over the limit of 256\n"));
    QVERIFY(runTool(directory, "repair % --dry-run")
                .output.contains("  lost: %1%2%3, line 1: its end is missing\n"));
    writeFile(directory.file("bookmark.xml"), "<bookmarks/>");
    COMPARE_RUN(runTool({utf8("bookmarks"), utf8("remove"), directory.path(), utf8("%2")}), 2, "",
                "velmora-profile: '%2' is no id; there are 0, the first is 0, 'list' shows them\n");
}

QTEST_GUILESS_MAIN(tst_corpus)
#include "tst_corpus.moc"
