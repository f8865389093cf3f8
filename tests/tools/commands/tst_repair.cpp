// What velmora-profile gets back from damaged files.

#include "tests/tools/Tool.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QXmlStreamReader>

class tst_repair : public QObject
{
    Q_OBJECT

private slots:
    void repair_leavesAGoodProfileAlone();
    void repair_changesNothingOnADryRun();
    void repair_getsBackWhatIsBehindTheDamage_data();
    void repair_getsBackWhatIsBehindTheDamage();
    void repair_keepsADatedCopy();
    void repair_keepsCopiesOfSecretsPrivate_data();
    void repair_keepsCopiesOfSecretsPrivate();
    void repair_leavesAloneWhatItCannotCopy_data();
    void repair_leavesAloneWhatItCannotCopy();
    void repair_getsBackPreferences();
    void repair_keepsTheLastOfTwoOfAPreference();
    void repair_keepsTheVersionOfSecurity();
    void repair_keepsWhatGettersHide();
    void repair_skipsEntriesInComments();
    void repair_readsOtherEncodings();
    void repair_namesAndNumbers();
    void repair_leavesTheContentOfAnotherFileAlone();
    void repair_keepsTheFirst999();
    void repair_survivesEveryTruncation_data();
    void repair_survivesEveryTruncation();
    void repair_survivesBrokenBytes_data();
    void repair_survivesBrokenBytes();
    void repair_tellsNoSecrets();
    void repair_tellsNoSecretsOfPlainText();
    void repair_tellsOfACookieFileThatCannotBeRead();
};

namespace
{
const char kHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

QByteArray fonts(const QByteArray &entries)
{
    return QByteArray(kHead) + "<fontlist docInfo=\"1.0\">\n" + entries + "</fontlist>\n";
}

QByteArray font(int id, const char *name)
{
    return "    <font id=\"" + QByteArray::number(id).rightJustified(3, '0') + "\">" + name
           + "</font>\n";
}

QByteArray withoutCopies(const QByteArray &output)
{
    QByteArray lines;
    const QList<QByteArray> all = output.split('\n');
    for (const QByteArray &line : all) {
        if (!line.startsWith("  copy: ") && !line.isEmpty()) {
            lines += line + '\n';
        }
    }
    return lines;
}

bool isWhole(const QString &path)
{
    QXmlStreamReader reader(readFile(path));
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return !reader.hasError();
}

QStringList copiesIn(const TestDirectory &directory)
{
    return QDir(directory.path()).entryList({utf8("*.bak")});
}
} // namespace

void tst_repair::repair_leavesAGoodProfileAlone()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runTool(directory, "repair %"), 0, "nothing to repair\n", "");
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_repair::repair_changesNothingOnADryRun()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist><font>A</font><font>B");
    writeFile(directory.file("cookie.xml"), "<cookie/>");
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(
        runTool(directory, "repair % --dry-run"), 1,
        "fontlist.xml: damaged at line 1, column 31: Premature end of document. (1 entry "
        "before it)\n"
        "  kept: A\n"
        "  lost: B, line 1: its end is missing\n"
        "cookie.xml: users other than its owner could read or write it: its mode is now 0600\n"
        "nothing was changed: this was a dry run\n",
        "");
    COMPARE_BYTES(contentsOf(directory.path()), before);
    QVERIFY(QFileInfo(directory.file("cookie.xml")).permission(QFile::ReadOther));
}

void tst_repair::repair_getsBackWhatIsBehindTheDamage_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::addColumn<QByteArray>("said");
    QTest::newRow("a bare ampersand")
        << QByteArray("<font>A</font>\n<font>B & C</font>\n<font>D</font>\n")
        << QByteArray("  kept: A\n  kept: D\n"
                      "  lost: an entry, line 4: Expected '#' or '[a-zA-Z]', but got ' '.\n");
    QTest::newRow("a lost end tag") << QByteArray("<font>A</font>\n<font>B\n<font>D</font>\n")
                                    << QByteArray("  kept: A\n  kept: D\n  lost: B, line 4: ");
    QTest::newRow("a lost start tag")
        << QByteArray("<font>A</font>\n<fomt>B</font>\n<font>D</font>\n")
        << QByteArray("  kept: A\n  kept: D\n  lost: an entry, line 4: its start is damaged\n");
    QTest::newRow("bytes that are no UTF-8")
        << QByteArray("<font>A</font>\n<font>\xff\xfe</font>\n<font>D</font>\n")
        << QByteArray("  kept: A\n  kept: D\n"
                      "  lost: an entry, line 4: Encountered incorrectly encoded content.\n");
    QTest::newRow("rubbish between entries")
        << QByteArray("<font>A</font>\n<<<& \x01\n<font>D</font>\n")
        << QByteArray("  kept: A\n  kept: D\n");
    QTest::newRow("a comment without end") << QByteArray("<font>A</font>\n<!-- \n<font>D</font>\n")
                                           << QByteArray("  kept: A\n  kept: D\n");
}

void tst_repair::repair_getsBackWhatIsBehindTheDamage()
{
    QFETCH(QByteArray, damaged);
    QFETCH(QByteArray, said);
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), fonts(damaged));
    const ToolRun run = runTool(directory, "repair %");
    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, said.contains("lost") ? 1 : 0);
    QVERIFY2(run.output.contains(said), run.output.constData());
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), fonts(font(0, "A") + font(1, "D")));
    COMPARE_RUN(runTool(directory, "repair %"), 0, "nothing to repair\n", "");
}

void tst_repair::repair_keepsADatedCopy()
{
    const TestDirectory directory;
    const QByteArray damaged = "<fontlist><font>A</font>";
    writeFile(directory.file("fontlist.xml"), damaged);
    QFile::setPermissions(directory.file("fontlist.xml"), QFile::ReadOwner | QFile::WriteOwner);
    const ToolRun first = runTool(directory, "repair %");
    QCOMPARE(first.status, 0);
    writeFile(directory.file("fontlist.xml"), damaged + "<font>B</font>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    const QStringList copies = copiesIn(directory);
    QCOMPARE(copies.size(), 2);
    QVERIFY2(copies.at(0).startsWith(utf8("fontlist.xml.20")), qPrintable(copies.at(0)));
    QVERIFY(first.output.contains("  copy: " + copies.at(0).toUtf8() + "\n")
            || first.output.contains("  copy: " + copies.at(1).toUtf8() + "\n"));
    QVERIFY(readFile(directory.path() + copies.at(0)) == damaged
            || readFile(directory.path() + copies.at(1)) == damaged);
    QCOMPARE(QFileInfo(directory.path() + copies.at(0)).permissions(),
             QFileInfo(directory.file("fontlist.xml")).permissions());
}

void tst_repair::repair_keepsCopiesOfSecretsPrivate_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("damaged");
    QTest::newRow("credentials") << QByteArray("authinfo.xml")
                                 << QByteArray("<authentication><authInfo><hostName>h</hostName>"
                                               "<passwd><![CDATA[Z2VoZWlt]]></passwd>");
    QTest::newRow("cookie document")
        << QByteArray("cookie.xml")
        << QByteArray("<cookie><webSiteInfo><contents>geheim</contents>");
    QTest::newRow("cookies of the engine")
        << QByteArray("cookie.ini") << QByteArray("[Cookie]\ncookies=geheim\n");
    QTest::newRow("password of the proxy behind the damage")
        << QByteArray("repostry.xml")
        << QByteArray("<repostry_common><proxy>&<proxyUserPass><![CDATA[Z2VoZWlt]]>");
}

void tst_repair::repair_keepsCopiesOfSecretsPrivate()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, damaged);
    const TestDirectory directory;
    writeFile(directory.file(file.constData()), damaged);
    QFile::setPermissions(directory.file(file.constData()), QFile::ReadOwner | QFile::WriteOwner
                                                                | QFile::ReadGroup
                                                                | QFile::ReadOther);
    const ToolRun run = runTool(directory, "repair %");
    COMPARE_BYTES(run.errors, "");
    const QStringList copies = copiesIn(directory);
    QCOMPARE(copies.size(), 1);
    const QFileInfo copy(directory.path() + copies.at(0));
    COMPARE_BYTES(readFile(copy.filePath()), damaged);
    QVERIFY(!(copy.permissions()
              & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther)));
}

void tst_repair::repair_leavesAloneWhatItCannotCopy_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("damaged");
    // The repaired file would fit where its copy does not.
    const QByteArray lost(9000, 'x');
    QTest::newRow("plain file") << QByteArray("fontlist.xml")
                                << "<fontlist><font>A</font><font>" + lost;
    QTest::newRow("secrets") << QByteArray("authinfo.xml")
                             << "<authentication><authInfo><hostName>" + lost;
    QTest::newRow("cookies of the engine")
        << QByteArray("cookie.ini") << "[Cookie]\ncookies=" + lost;
}

void tst_repair::repair_leavesAloneWhatItCannotCopy()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, damaged);
    const TestDirectory directory;
    const QString path = directory.file(file.constData());
    writeFile(path, damaged);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    const ToolRun run = runInBlocks(8, directory, "repair %");
    COMPARE_BYTES(run.output, "");
    QVERIFY2(isOneLine(run.errors), run.errors.constData());
    QVERIFY2(run.errors.startsWith("velmora-profile: " + file + " cannot be copied to ")
                 && run.errors.endsWith(".bak; nothing was changed; check the free space\n"),
             run.errors.constData());
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), path.toUtf8() + '\n' + damaged);
}

void tst_repair::repair_getsBackPreferences()
{
    const TestDirectory directory;
    writeFile(directory.file("repostry_private.xml"),
              QByteArray(kHead)
                  + "<repostry docInfo=\"1.0\">\n    <pageInfo>\n        <home>http://h/</home>\n"
                    "        <startup>last&page</startup>\n        <Zoom>1.5</Zoom>\n"
                    "    </pageInfo>\n    <font>\n        <fontName>Serif</fontName>\n"
                    "    </font>\n</repostry>\n");
    const ToolRun run = runTool(directory, "repair %");
    COMPARE_BYTES(withoutCopies(run.output),
                  "repostry_private.xml: damaged at line 5, column 27: Expected ';', but got '<'. "
                  "(1 entry before it)\n"
                  "  kept: pageInfo.home\n"
                  "  kept: pageInfo.Zoom\n"
                  "  kept: font.fontName\n"
                  "  lost: pageInfo.startup, line 5: Expected ';', but got '<'.\n");
    QCOMPARE(run.status, 1);
    COMPARE_BYTES(readFile(directory.file("repostry_private.xml")),
                  QByteArray(kHead)
                      + "<repostry docInfo=\"1.0\">\n    <pageInfo>\n"
                        "        <home>http://h/</home>\n        <Zoom>1.5</Zoom>\n"
                        "    </pageInfo>\n    <font>\n        <fontName>Serif</fontName>\n"
                        "    </font>\n</repostry>\n");
}

void tst_repair::repair_keepsTheLastOfTwoOfAPreference()
{
    const TestDirectory directory;
    writeFile(directory.file("repostry_private.xml"),
              "<repostry><pageInfo>&<home>http://a/</home><home>http://b/</home></pageInfo>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("repostry_private.xml")),
                  QByteArray(kHead)
                      + "<repostry docInfo=\"1.0\">\n    <pageInfo>\n"
                        "        <home>http://b/</home>\n    </pageInfo>\n</repostry>\n");
}

// Without it the browser would switch SSL 3.0 off.
void tst_repair::repair_keepsTheVersionOfSecurity()
{
    const TestDirectory directory;
    writeFile(directory.file("repostry.xml"),
              "<repostry_common><cookie>&</cookie><security version=\"2.0\">"
              "<enableSSL30>true</enableSSL30></security></repostry_common>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("repostry.xml")),
                  QByteArray(kHead)
                      + "<repostry_common docInfo=\"1.0\">\n    <cookie/>\n"
                        "    <security version=\"2.0\">\n"
                        "        <enableSSL30>true</enableSSL30>\n    </security>\n"
                        "</repostry_common>\n");
}

void tst_repair::repair_keepsWhatGettersHide()
{
    const TestDirectory directory;
    const QByteArray url = "http://u/" + QByteArray(300, 'u');
    const QByteArray title(150, 't');
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark><href>" + url + "</href><title>" + title
                  + "</title><thumbnail>000001.PNG</thumbnail></bookmark><bookmark>");
    writeFile(directory.file("visit.xml"),
              "<history><pageInfo><url>u</url><dateTime>2026/1/2</dateTime></pageInfo><pageInfo>");
    QCOMPARE(runTool(directory, "repair %").status, 1);
    const QByteArray bookmarks = readFile(directory.file("bookmark.xml"));
    QVERIFY(bookmarks.contains("<href>" + url + "</href>"));
    QVERIFY(bookmarks.contains("<title>" + title + "</title>"));
    QVERIFY(bookmarks.contains("<thumbnail>000001.PNG</thumbnail>"));
    QVERIFY(readFile(directory.file("visit.xml")).contains("<dateTime>2026/1/2</dateTime>"));
}

void tst_repair::repair_skipsEntriesInComments()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist><!-- <font>X</font> --><![CDATA[<font>Y</font>]]><font>A</font>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), fonts(font(0, "A")));
}

void tst_repair::repair_readsOtherEncodings()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><fontlist><font>\x82\xa0</font>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), fonts(font(0, "\xe3\x81\x82")));
    const QString wide = utf8("<fontlist><font>A</font><font>");
    QByteArray utf16("\xff\xfe", 2);
    utf16.append(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2);
    writeFile(directory.file("fontlist.xml"), utf16);
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), fonts(font(0, "A")));
}

void tst_repair::repair_namesAndNumbers()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<list><font id=\"7\">A</font></list>");
    QCOMPARE(runTool(directory, "repair %").status, 0);
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), fonts(font(0, "A")));
    writeFile(directory.file("cookie.xml"),
              "<cookie docInfo=\"1.0\"><webSiteInfo id=\"0\"><name>n</name></webSiteInfo>"
              "<webSiteInfo id=\"0\"><name>m</name></webSiteInfo></cookie>");
    COMPARE_BYTES(
        withoutCopies(runTool(directory, "repair %").output),
        "cookie.xml: its entries are not numbered from 0\n"
        "  kept: n\n"
        "  kept: m\n"
        "cookie.xml: users other than its owner could read or write it: its mode is now 0600\n");
    COMPARE_BYTES(readFile(directory.file("cookie.xml")),
                  QByteArray(kHead)
                      + "<cookie docInfo=\"1.0\">\n    <webSiteInfo id=\"000\">\n"
                        "        <name>n</name>\n    </webSiteInfo>\n"
                        "    <webSiteInfo id=\"001\">\n        <name>m</name>\n"
                        "    </webSiteInfo>\n</cookie>\n");
}

void tst_repair::repair_leavesTheContentOfAnotherFileAlone()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<history><pageInfo/></history>");
    COMPARE_RUN(runTool(directory, "repair %"), 0, "nothing to repair\n", "");
}

void tst_repair::repair_keepsTheFirst999()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 1001; ++i) {
        entries += "<font>" + QByteArray::number(i) + "</font>";
    }
    writeFile(directory.file("fontlist.xml"), fonts(entries));
    const ToolRun run = runTool(directory, "repair %");
    QCOMPARE(run.status, 1);
    QVERIFY(run.output.contains("  lost: 999: it comes after the 999th, where the library cannot "
                                "reach it\n  lost: 1000: "));
    QCOMPARE(jsonOf(runTool(directory, "fonts list % --json")).array().size(), 999);
}

void tst_repair::repair_survivesEveryTruncation_data()
{
    QTest::addColumn<QByteArray>("file");
    for (const char *const file : {"repostry.xml", "repostry_private.xml", "bookmark.xml",
                                   "visit.xml", "authinfo.xml", "fontlist.xml", "cookie.xml"}) {
        QTest::newRow(file) << QByteArray(file);
    }
}

// Wherever a document ends: what was whole is back, and the document is whole.
void tst_repair::repair_survivesEveryTruncation()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeGoodProfile(directory);
    runTool(directory, "cookies to-xml %");
    const QString path = directory.file(file.constData());
    const QByteArray whole = readFile(path);
    for (int size = 1; size < whole.size() - 1; size += 17) {
        writeFile(path, whole.left(size));
        const ToolRun run = runTool(directory, "repair %");
        QVERIFY2(run.status == 0 || run.status == 1, run.errors.constData());
        QVERIFY2(isWhole(path), readFile(path).constData());
    }
}

void tst_repair::repair_survivesBrokenBytes_data() { repair_survivesEveryTruncation_data(); }

void tst_repair::repair_survivesBrokenBytes()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeGoodProfile(directory);
    runTool(directory, "cookies to-xml %");
    const QString path = directory.file(file.constData());
    const QByteArray whole = readFile(path);
    for (int position = 40; position < whole.size(); position += 31) {
        QByteArray broken = whole;
        broken[position] = position % 2 ? '<' : '\xff';
        writeFile(path, broken);
        const ToolRun run = runTool(directory, "repair %");
        QVERIFY2(run.status == 0 || run.status == 1, run.errors.constData());
        QVERIFY2(isWhole(path), readFile(path).constData());
    }
}

void tst_repair::repair_tellsNoSecrets()
{
    const TestDirectory directory;
    writeFile(directory.file("authinfo.xml"),
              "<authentication><authInfo><passwd><![CDATA[Z2VoZWlt]]></passwd></authInfo>"
              "<authInfo><hostName>h</hostName><passwd><![CDATA[Z2VoZWlt]]></passwd></authInfo>"
              "<authInfo><passwd><![CDATA[Z2VoZWlt]]></passwd>");
    const ToolRun run = runTool(directory, "repair %");
    QCOMPARE(run.status, 1);
    QVERIFY2(!run.output.contains("Z2Vo") && !run.output.contains("geheim"),
             run.output.constData());
    QVERIFY(readFile(directory.file("authinfo.xml")).contains("Z2VoZWlt"));
    const QJsonObject json =
        jsonOf(runTool(directory, "repair % --dry-run --json")).array().at(0).toObject();
    QVERIFY(json.isEmpty());
}

// Whoever wrote the file: neither a password that is not marked as encoded nor a cookie's value.
void tst_repair::repair_tellsNoSecretsOfPlainText()
{
    const TestDirectory directory;
    writeFile(directory.file("authinfo.xml"),
              "<authentication><authInfo><user>geheim</user><passwd>geheim</passwd></authInfo>"
              "<authInfo><passwd>geheim</passwd>");
    writeFile(directory.file("cookie.xml"),
              "<cookie><webSiteInfo><contents>geheim</contents><name>n</name></webSiteInfo>"
              "<webSiteInfo><contents>geheim");
    const ToolRun run = runTool(directory, "repair %");
    QCOMPARE(run.status, 1);
    QVERIFY2(!run.output.contains("geheim"), run.output.constData());
    QVERIFY2(run.output.contains("  kept: n\n"), run.output.constData());
}

void tst_repair::repair_tellsOfACookieFileThatCannotBeRead()
{
    const TestDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir(utf8("cookie.ini")));
    COMPARE_RUN(runTool(directory, "repair %"), 2, "",
                "velmora-profile: cookie.ini cannot be read; check its owner and mode\n");
}

QTEST_GUILESS_MAIN(tst_repair)
#include "tst_repair.moc"
