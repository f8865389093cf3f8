// velmora-profile show, and the form of all tables.

#include "tests/tools/Tool.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>

#include <sys/stat.h>

class tst_show : public QObject
{
    Q_OBJECT

private slots:
    void show_listsEveryFile();
    void show_tellsEveryBitOfTheMode();
    void show_tellsDamage();
    void show_readsNoMoreThanTheLibrary_data();
    void show_readsNoMoreThanTheLibrary();
    void show_printsJson();
    void tables_alignWideCharacters();
    void tables_printLongCellsWhole();
    void tables_showNoControlCharacters();
};

void tst_show::show_listsEveryFile()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist><font id=\"000\">A</font></fontlist>");
    writeFile(directory.file("visit.xml"), " \n");
    QFile::setPermissions(directory.file("fontlist.xml"), QFile::ReadOwner | QFile::WriteOwner);
    QFile::setPermissions(directory.file("visit.xml"), QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray changed = QFileInfo(directory.file("fontlist.xml"))
                                   .lastModified()
                                   .toString(utf8("yyyy-MM-dd hh:mm:ss"))
                                   .toUtf8();
    const QByteArray changedToo = QFileInfo(directory.file("visit.xml"))
                                      .lastModified()
                                      .toString(utf8("yyyy-MM-dd hh:mm:ss"))
                                      .toUtf8();
    COMPARE_RUN(runTool(directory, "show %"), 0,
                "File                  State    Entries  Bytes  Mode  Changed\n"
                "repostry.xml          missing  -        -      -     -\n"
                "repostry_private.xml  missing  -        -      -     -\n"
                "bookmark.xml          missing  -        -      -     -\n"
                "visit.xml             empty    0        2      0600  "
                    + changedToo
                    + "\n"
                      "authinfo.xml          missing  -        -      -     -\n"
                      "fontlist.xml          whole    1        44     0600  "
                    + changed
                    + "\n"
                      "cookie.xml            missing  -        -      -     -\n"
                      "cookie.ini            missing  -        -      -     -\n"
                      "thumbnail/            missing  -        -      -     -\n"
                      "\n1 finding\n"
                      "visit.xml: it is empty\n"
                      "  means: the browser starts without what it should hold\n"
                      "  to do: restore it, or remove it to start afresh\n",
                "");
}

// Of a folder, since everybody can see its mode.
void tst_show::show_tellsEveryBitOfTheMode()
{
    const TestDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir(utf8("thumbnail")));
    const QByteArray path = QFile::encodeName(directory.file("thumbnail"));
    for (int bit = 0400; bit > 0; bit /= 2) {
        QCOMPARE(chmod(path.constData(), mode_t(bit)), 0);
        const QByteArray mode = QByteArray::number(bit, 8).rightJustified(4, '0');
        const ToolRun run = runTool(directory, "show %");
        QVERIFY2(run.output.contains("folder   0        -      " + mode + "  "),
                 run.output.constData());
    }
    QCOMPARE(chmod(path.constData(), 0700), 0);
}

void tst_show::show_tellsDamage()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist>\n<font>A</font>\n<font>B</font>\n<font>C</fo");
    const ToolRun run = runTool(directory, "show %");
    QVERIFY2(run.output.contains("\nfontlist.xml is damaged at line 4, column 11: Premature end of "
                                 "document. (2 entries before it)\n"),
             run.output.constData());
    QCOMPARE(run.status, 0);
}

void tst_show::show_readsNoMoreThanTheLibrary_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<bool>("isWhole");
    const QByteArray entity = "<!ENTITY e '" + QByteArray(4000, 'x') + "'>";
    QTest::newRow("an entity") << entity << QByteArray("&e;") << true;
    QTest::newRow("two uses of it") << entity << QByteArray("&e;&e;") << false;
    QTest::newRow("more uses than memory holds")
        << entity << QByteArray("&e;").repeated(600000) << false;
    const QByteArray attribute = "<!ATTLIST x a CDATA '" + QByteArray(4000, 'x') + "'>";
    QTest::newRow("an attribute") << attribute << QByteArray("<x/>") << true;
    QTest::newRow("the attribute twice") << attribute << QByteArray("<x/><x/>") << false;
}

// An entity that is used often enough fills all memory out of a small file.
void tst_show::show_readsNoMoreThanTheLibrary()
{
    QFETCH(QByteArray, declarations);
    QFETCH(QByteArray, title);
    QFETCH(bool, isWhole);
    const TestDirectory directory;
    const QByteArray bookmark = "<bookmark><href>http://a/</href><thumbnail/>";
    writeFile(directory.file("bookmark.xml"), "<!DOCTYPE b [" + declarations + "]><bookmarks>"
                                                  + bookmark + "</bookmark>" + bookmark + "<title>"
                                                  + title + "</title></bookmark></bookmarks>");
    const QByteArray before = contentsOf(directory.path());
    for (const char *const command :
         {"show %", "check %", "repair % --dry-run", "bookmarks list %"}) {
        const ToolRun run = runTool(directory, command);
        QVERIFY2(run.status == 0 || run.status == 1, command);
        const bool tellsDamage = (run.output + run.errors).contains("(1 entry before it)");
        QVERIFY2(tellsDamage != isWhole || command == QByteArray("repair % --dry-run"),
                 (run.output + run.errors).constData());
    }
    QCOMPARE(runTool(directory, "bookmarks add % http://b/").status, isWhole ? 0 : 2);
    if (!isWhole) {
        COMPARE_BYTES(contentsOf(directory.path()), before);
    }
}

void tst_show::show_printsJson()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist>\n<font>A</font>\n<font>");
    const QJsonObject object = jsonOf(runTool(directory, "show % --json")).object();
    QCOMPARE(object.value(utf8("directory")).toString(), directory.path());
    QCOMPARE(object.value(utf8("files")).toArray().size(), 9);
    const QJsonObject fonts = object.value(utf8("files")).toArray().at(5).toObject();
    QCOMPARE(fonts.value(utf8("file")).toString(), utf8("fontlist.xml"));
    QCOMPARE(fonts.value(utf8("state")).toString(), utf8("damaged"));
    const QJsonObject damage = fonts.value(utf8("damage")).toObject();
    QCOMPARE(damage.value(utf8("line")).toInt(), 3);
    QCOMPARE(damage.value(utf8("entriesBefore")).toInt(), 1);
    QCOMPARE(object.value(utf8("findings")).toArray().size(), 2);
}

void tst_show::tables_alignWideCharacters()
{
    const TestDirectory directory;
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark><href>u</href><title>e\xcc\x81</title><thumbnail/></bookmark>"
              "<bookmark><href>u</href><title>\xe3\x81\x82</title><thumbnail/></bookmark>"
              "<bookmark><href>u</href><title>\xf0\x9f\x98\x80</title><thumbnail/></bookmark>"
              "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks list %"), 0,
                "Id  Title  URL  Thumbnail\n"
                "0   e\xcc\x81      u\n"
                "1   \xe3\x81\x82     u\n"
                "2   \xf0\x9f\x98\x80     u\n",
                "");
}

// Rows that were all as long as the longest cell would take 6 GB.
void tst_show::tables_printLongCellsWhole()
{
    const TestDirectory directory;
    const QByteArray title(3000000, 't');
    const QByteArray entry = "<bookmark><href>u</href><title>s</title><thumbnail/></bookmark>";
    writeFile(directory.file("bookmark.xml"), "<bookmarks><bookmark><href>u</href><title>" + title
                                                  + "</title><thumbnail/></bookmark>"
                                                  + entry.repeated(998) + "</bookmarks>");
    const ToolRun run = runTool(directory, "bookmarks list %");
    QCOMPARE(run.status, 0);
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(int(lines.size()), 1 + 999 + 1);
    QVERIFY(lines.at(1) == "0    " + title + "  u");
    QVERIFY(lines.at(2).startsWith("1    s  ") && lines.at(2).endsWith("  u"));
    QVERIFY(lines.at(2).size() < 10000);
}

void tst_show::tables_showNoControlCharacters()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist><font>a\nb</font><font>x\xe2\x80\xaey</font><font>c\xc2\x9b"
              "1m</font></fontlist>");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0,
                "Id  Name\n0   a\xe2\x90\x8a"
                "b\n1   x\xef\xbf\xbdy\n2   c\xef\xbf\xbd"
                "1m\n",
                "");
}

QTEST_GUILESS_MAIN(tst_show)
#include "tst_show.moc"
