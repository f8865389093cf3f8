// What velmora-profile takes from other programs' files and gives to them: the limits of the
// profile are the tool's, the formats have tests of their own.

#include "tests/tools/Tool.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>

#include <fcntl.h>
#include <sys/stat.h>

class tst_exchange : public QObject
{
    Q_OBJECT

private slots:
    void bookmarks_comeBackAsTheyWere_data();
    void bookmarks_comeBackAsTheyWere();
    void bookmarks_areAppended();
    void bookmarks_leaveTheirFolders();
    void bookmarks_overALimitAreListed();
    void bookmarks_behindThe999thAreListed();
    void bookmarks_changeNothingOnADryRun();
    void strictImports_changeNothing_data();
    void strictImports_changeNothing();
    void strictExports_writeNothing_data();
    void strictExports_writeNothing();
    void exportThatDoesNotFit_leavesTheFile_data();
    void exportThatDoesNotFit_leavesTheFile();
    void bookmarks_areRefusedFromOtherFiles();
    void bookmarks_comeFromStandardInput();
    void history_isExported();
    void cookies_comeBackAsTheyWere();
    void cookies_replaceTheirNamesakes();
    void cookies_thatTheIniCannotHoldAreListed();
    void exports_refuseDamage_data();
    void exports_refuseDamage();
    void exports_arePrivateWhereTheyHoldSessions();
    void exports_goIntoPipes_data();
    void exports_goIntoPipes();
    void exports_goToStandardOutputByItsName();
    void exports_refuseFolders();
    void files_thatCannotBeReadOrWritten_data();
    void files_thatCannotBeReadOrWritten();
};

namespace
{
// A text of all kinds of characters that both XML and HTML carry.
QString anyText(int seed)
{
    const uint planes[] = {0x20, 0x21, 0xa1, 0x3041, 0xac00, 0x1f600, 0x20000};
    QString all = QString::number(seed);
    for (int i = 0; i < 8; ++i) {
        const uint code = planes[(seed + i) % 7] + uint((seed * 31 + i * 7) % 64);
        const char32_t character = code == 0x7f ? U'x' : char32_t(code);
        all += QString::fromUcs4(&character, 1);
    }
    return all + QLatin1Char('.');
}

QByteArray xbel(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xbel>\n<xbel version=\"1.0\">\n"
           + content + "</xbel>\n";
}

QByteArray xbelBookmark(const QByteArray &url, const QByteArray &title)
{
    return "<bookmark href=\"" + url + "\"><title>" + title + "</title></bookmark>\n";
}
} // namespace

void tst_exchange::bookmarks_comeBackAsTheyWere_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("netscape") << QByteArray("netscape");
    QTest::newRow("xbel") << QByteArray("xbel");
}

void tst_exchange::bookmarks_comeBackAsTheyWere()
{
    QFETCH(QByteArray, format);
    const TestDirectory one;
    const TestDirectory other;
    QByteArray entries;
    for (int i = 0; i < 999; ++i) {
        entries += "<bookmark><href>http://x/?" + QByteArray::number(i) + "&amp;b</href><title>"
                   + anyText(i).toHtmlEscaped().toUtf8() + "</title><thumbnail/></bookmark>\n";
    }
    writeFile(one.file("bookmark.xml"), "<bookmarks>" + entries + "</bookmarks>");
    const QByteArray path = one.file("exported").toUtf8();
    COMPARE_RUN(runTool(one, ("bookmarks export % " + path + " --format " + format).constData()), 0,
                "", "");

    const ToolRun run = runTool(other, ("bookmarks import % " + path + " --strict").constData());

    COMPARE_BYTES(run.errors, "");
    QVERIFY2(run.output.contains(": 999 bookmarks were added, 0 losses\n"), run.output.constData());
    COMPARE_BYTES(runTool(other, "bookmarks list % --json").output,
                  runTool(one, "bookmarks list % --json").output);
}

void tst_exchange::bookmarks_areAppended()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("in"), xbel(xbelBookmark("http://c/", "C")));
    COMPARE_RUN(runTool(directory, "bookmarks import % %in"), 0,
                "XBEL: 1 bookmark was added, 0 losses\n", "");
    QVERIFY(runTool(directory, "bookmarks list %").output.contains("\n2   C "));
    QVERIFY(readFile(directory.file("bookmark.xml")).contains("<thumbnail>000001.PNG</thumbnail>"));
}

void tst_exchange::bookmarks_leaveTheirFolders()
{
    const TestDirectory directory;
    writeFile(directory.file("in"), xbel("<folder><title>Outer</title><folder><title>Inner</title>"
                                         + xbelBookmark("http://c/", "C") + "</folder></folder>"));
    const QByteArray lost = "velmora-profile: lost: C: its folder Outer / Inner\n";
    COMPARE_RUN(runTool(directory, "bookmarks import % %in --strict"), 2, "",
                lost + "velmora-profile: 1 loss, and --strict is set; nothing was changed\n");
    QVERIFY(!exists(directory.file("bookmark.xml")));
    COMPARE_RUN(runTool(directory, "bookmarks import % %in"), 0,
                "XBEL: 1 bookmark was added, 1 loss\n", lost);
}

void tst_exchange::bookmarks_overALimitAreListed()
{
    const TestDirectory directory;
    const QByteArray url = "http://x/" + QByteArray(247, 'u');
    const QByteArray title(100, 't');
    writeFile(directory.file("in"),
              xbel(xbelBookmark(url, "fits") + xbelBookmark(url + "u", "long")
                   + xbelBookmark("http://1/", title) + xbelBookmark("http://2/", title + "t")));
    const ToolRun run = runTool(directory, "bookmarks import % %in --json");
    QCOMPARE(run.status, 0);
    const QJsonObject object = jsonOf(run).object();
    QCOMPARE(object.value(utf8("added")).toInt(), 3);
    const QJsonArray losses = object.value(utf8("losses")).toArray();
    QCOMPARE(losses.size(), 2);
    QCOMPARE(losses.at(0).toObject().value(utf8("reason")).toString(),
             utf8("its URL has 257 bytes, over the limit of 256"));
    QCOMPARE(losses.at(1).toObject().value(utf8("reason")).toString(),
             utf8("its title of 101 bytes is cut to 100"));
    QVERIFY(readFile(directory.file("bookmark.xml")).contains("<title>" + title + "</title>"));
}

void tst_exchange::bookmarks_behindThe999thAreListed()
{
    const TestDirectory directory;
    QByteArray content;
    for (int i = 0; i < 10000; ++i) {
        content +=
            xbelBookmark("http://x/" + QByteArray::number(i), anyText(i).toHtmlEscaped().toUtf8());
    }
    writeFile(directory.file("in"), xbel(content));
    const ToolRun run = runTool(directory, "bookmarks import % %in");
    QCOMPARE(run.status, 0);
    COMPARE_BYTES(run.output, "XBEL: 999 bookmarks were added, 9001 losses\n");
    QCOMPARE(run.errors.count("the list already holds 999 entries\n"), 9001);
    QCOMPARE(jsonOf(runTool(directory, "bookmarks list % --json")).array().size(), 999);
}

void tst_exchange::bookmarks_changeNothingOnADryRun()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("in"), xbel(xbelBookmark("http://c/", "C")));
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runTool(directory, "bookmarks import % %in --dry-run"), 0,
                "XBEL: 1 bookmark would be added, 0 losses\n", "");
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_exchange::strictImports_changeNothing_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("content");
    const QByteArray bookmarks = "bookmarks import % % --strict";
    const QDir samples(utf8(SAMPLES));
    const QStringList files = samples.entryList({utf8("*.html"), utf8("*.xbel")}, QDir::Files);
    for (const QString &file : files) {
        const QByteArray expected =
            readFile(samples.filePath(file.section(QLatin1Char('.'), 0, 0) + utf8(".expected")));
        if (expected.contains("\nlost: ")) {
            QTest::newRow(file.toUtf8().constData())
                << bookmarks << readFile(samples.filePath(file));
        }
    }
    QTest::newRow("URL over the limit")
        << bookmarks << xbel(xbelBookmark(QByteArray(257, 'u'), "t"));
    QTest::newRow("title over the limit")
        << bookmarks << xbel(xbelBookmark("u", QByteArray(101, 't')));
    QTest::newRow("character that the document loses")
        << bookmarks << xbel(xbelBookmark("u", "a\xef\xb7\x90z"));
    QTest::newRow("more than 999") << bookmarks << xbel(xbelBookmark("u", "t").repeated(998));
    const QByteArray cookies = "cookies import % % --strict";
    const QByteArray good = "b.example\tFALSE\t/\tFALSE\t0\tgood\t1\n";
    QTest::newRow("line that is none") << cookies << good + "words\n";
    QTest::newRow("expiry out of range") << cookies << good + "b\tFALSE\t/\tFALSE\t-1\tn\tv\n";
    QTest::newRow("cookie that the engine cannot hold")
        << cookies << good + "b.example\tFALSE\t/\tFALSE\t0\tbad\ta;b\n";
}

void tst_exchange::strictImports_changeNothing()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, content);
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    QStringList arguments = QString::fromUtf8(command).split(QLatin1Char(' '));
    arguments[2] = directory.path();
    arguments[3] = utf8("-");
    const ToolRun run = runTool(arguments, content);
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(run.output, "");
    const int losses = int(run.errors.count("velmora-profile: lost: "));
    QVERIFY(losses > 0);
    const QByteArray counted = QByteArray::number(losses) + (losses == 1 ? " loss" : " losses");
    QVERIFY2(run.errors.endsWith("\nvelmora-profile: " + counted
                                 + ", and --strict is set; nothing was changed\n"),
             run.errors.constData());
    QCOMPARE(run.errors.count('\n'), losses + 1);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_exchange::strictExports_writeNothing_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *const command :
         {"bookmarks export % %out --strict", "bookmarks export % %out --strict --format xbel",
          "cookies export % %out --strict"}) {
        QTest::newRow(command) << QByteArray(command);
    }
}

void tst_exchange::strictExports_writeNothing()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark><href>u</href><title>a\nz</title></bookmark></bookmarks>");
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly)
        << qint32(1) << QByteArray("a=\tb\x01; domain=a.example; path=/");
    QSettings(directory.file("cookie.ini"), QSettings::IniFormat)
        .setValue(utf8("Cookie/cookies"), bytes);
    writeFile(directory.file("out"), "before");
    const QByteArray before = contentsOf(directory.path());
    const ToolRun run = runTool(directory, command.constData());
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.startsWith("velmora-profile: lost: a")
                 && run.errors.endsWith("\nvelmora-profile: 1 loss, and --strict is set; "
                                        "nothing was changed\n")
                 && run.errors.count('\n') == 2,
             run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_exchange::bookmarks_areRefusedFromOtherFiles()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("in"), "just a text\n");
    const QByteArray before = contentsOf(directory.path());
    const ToolRun run = runTool(directory, "bookmarks import % %in");
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.endsWith("; nothing was changed\n") && run.errors.count('\n') == 1,
             run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_exchange::bookmarks_comeFromStandardInput()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, "bookmarks import % -", xbel(xbelBookmark("http://c/", "C"))), 0,
                "XBEL: 1 bookmark was added, 0 losses\n", "");
}

void tst_exchange::history_isExported()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun csv = runTool(directory, "history export % -");
    QCOMPARE(csv.status, 0);
    QVERIFY(csv.output.indexOf("http://b.example/") < csv.output.indexOf("http://a.example/"));
    QVERIFY(csv.output.contains("2026/01/01 09:05"));
    const QJsonDocument json = jsonOf(runTool(directory, "history export % - --format json"));
    QVERIFY(json.toJson().contains("http://a.example/"));
}

void tst_exchange::exportThatDoesNotFit_leavesTheFile_data()
{
    QTest::addColumn<int>("entries");
    QTest::newRow("a few blocks") << 20;
    QTest::newRow("many blocks") << 900;
}

void tst_exchange::exportThatDoesNotFit_leavesTheFile()
{
    QFETCH(int, entries);
    const TestDirectory directory;
    const QByteArray entry = "<bookmark><href>http://a.example/</href><title>T</title></bookmark>";
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks>" + entry.repeated(entries) + "</bookmarks>");
    writeFile(directory.file("out"), "before");
    const QByteArray before = contentsOf(directory.path());

    const ToolRun run = runInBlocks(1, directory, "bookmarks export % %out");

    QVERIFY2(run.errors.contains("out' cannot be written: "), run.errors.constData());
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_exchange::cookies_comeBackAsTheyWere()
{
    const TestDirectory one;
    const TestDirectory other;
    writeGoodProfile(one);
    const QByteArray path = one.file("cookies.txt").toUtf8();
    COMPARE_RUN(runTool(one, "cookies export % %cookies.txt"), 0, "", "");
    COMPARE_RUN(runTool(other, ("cookies import % " + path + " --strict").constData()), 0,
                "cookies.txt: 2 cookies were added, 0 losses\n", "");
    COMPARE_BYTES(runTool(other, "cookies list % --show-secrets").output,
                  runTool(one, "cookies list % --show-secrets").output);
    QVERIFY(!QFileInfo(other.file("cookie.ini")).permission(QFile::ReadOther));
}

void tst_exchange::cookies_replaceTheirNamesakes()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("in"), "# Netscape HTTP Cookie File\n"
                                    "b.example\tFALSE\t/docs\tFALSE\t0\tlang\tja\n"
                                    "c.example\tFALSE\t/\tFALSE\t0\tnew\t1\n");
    COMPARE_RUN(runTool(directory, "cookies import % %in --dry-run"), 0,
                "cookies.txt: 2 cookies would be added, 0 losses\n", "");
    QVERIFY(runTool(directory, "cookies list % --show-secrets").output.contains("  en\n"));
    COMPARE_RUN(runTool(directory, "cookies import % %in"), 0,
                "cookies.txt: 2 cookies were added, 0 losses\n", "");
    COMPARE_RUN(runTool(directory, "cookies list % --show-secrets"), 0,
                "Site        Name  Path   Secure  HttpOnly  Expires  Value\n"
                ".a.example  sid   /      yes     yes       session  abc\n"
                "b.example   lang  /docs  no      no        session  ja\n"
                "c.example   new   /      no      no        session  1\n",
                "");
}

void tst_exchange::cookies_thatTheIniCannotHoldAreListed()
{
    const TestDirectory directory;
    writeFile(directory.file("in"), "# Netscape HTTP Cookie File\n"
                                    "b.example\tFALSE\t/\tFALSE\t0\tgood\t1\n"
                                    "b.example\tFALSE\t/\tFALSE\t0\tbad\ta;b\n");
    const ToolRun run = runTool(directory, "cookies import % %in --json");
    QCOMPARE(run.status, 0);
    QCOMPARE(jsonOf(run).object().value(utf8("added")).toInt(), 1);
    QCOMPARE(jsonOf(run).object().value(utf8("losses")).toArray().size(), 1);
    QCOMPARE(jsonOf(runTool(directory, "cookies list % --json")).array().size(), 1);
    QCOMPARE(runTool(directory, "cookies import % %in --strict").status, 2);
}

void tst_exchange::exports_refuseDamage_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("bookmarks") << QByteArray("bookmark.xml")
                               << QByteArray("bookmarks export % %out");
    QTest::newRow("history") << QByteArray("visit.xml") << QByteArray("history export % %out");
    QTest::newRow("cookies") << QByteArray("cookie.ini") << QByteArray("cookies export % %out");
}

void tst_exchange::exports_refuseDamage()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeFile(directory.file(file.constData()),
              file.endsWith("ini") ? "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x3)\n" : "<a><b>");
    const ToolRun run = runTool(directory, command.constData());
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.contains("damaged") && run.errors.count('\n') == 1, run.errors.constData());
    QVERIFY(!exists(directory.file("out")));
}

void tst_exchange::exports_arePrivateWhereTheyHoldSessions()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies export % %out").status, 0);
    QVERIFY(!QFileInfo(directory.file("out")).permission(QFile::ReadGroup));
}

void tst_exchange::exports_goIntoPipes_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *const command : {"bookmarks export % ", "history export % ",
                                      "cookies export % ", "thumbnails pack % ", "report % -o "}) {
        QTest::newRow(command) << QByteArray(command);
    }
}

// A file in the place of the pipe would leave its reader waiting.
void tst_exchange::exports_goIntoPipes()
{
    QFETCH(QByteArray, command);
    TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray path = directory.localFile("pipe");
    QCOMPARE(mkfifo(path.constData(), 0600), 0);
    QFile pipe;
    QVERIFY(pipe.open(open(path.constData(), O_RDWR | O_NONBLOCK), QIODevice::ReadWrite,
                      QFile::AutoCloseHandle));
    const QByteArray whole = runTool(directory, (command + "-").constData()).output;
    QVERIFY(!whole.isEmpty());
    QCOMPARE(runTool(directory, (command + "%pipe").constData()).status, 0);
    struct stat status = {};
    QVERIFY(lstat(path.constData(), &status) == 0 && S_ISFIFO(status.st_mode));
    // A page says its minute, which may be the next one.
    QCOMPARE(int(pipe.read(2 * whole.size()).size()), int(whole.size()));
}

void tst_exchange::exports_goToStandardOutputByItsName()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray whole = runTool(directory, "bookmarks export % -").output;
    COMPARE_RUN(runTool(directory, "bookmarks export % /dev/stdout"), 0, whole, "");
}

void tst_exchange::exports_refuseFolders()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "bookmarks export % %thumbnail"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "thumbnail' cannot be written: it is a folder\n");
}

void tst_exchange::files_thatCannotBeReadOrWritten_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *const command : {"bookmarks import % %none/in", "cookies import % %none/in",
                                      "bookmarks export % %none/out", "history export % %none/out",
                                      "cookies export % %none/out", "thumbnails pack % %none/out",
                                      "thumbnails unpack % %none/in"}) {
        QTest::newRow(command) << QByteArray(command);
    }
}

void tst_exchange::files_thatCannotBeReadOrWritten()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    const ToolRun run = runTool(directory, command.constData());
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.startsWith("velmora-profile: '" + directory.path().toUtf8() + "none/")
                 && run.errors.count('\n') == 1,
             run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

QTEST_GUILESS_MAIN(tst_exchange)
#include "tst_exchange.moc"
