// velmora-profile thumbnails.

#include "tests/tools/Tool.h"

#include <QtCore/QFileInfo>

#include <sys/stat.h>

class tst_thumbnails : public QObject
{
    Q_OBJECT

private slots:
    void thumbnails_areListed();
    void thumbnails_areNoLinks();
    void thumbnails_areFilesAlone_data();
    void thumbnails_areFilesAlone();
    void thumbnails_arePackedAndUnpacked();
    void thumbnails_areUnpackedInPlaceOfPipes();
    void thumbnails_areUnpackedFromStandardInput();
    void thumbnails_areUnpackedIntoTheProfileAlone();
    void thumbnails_areCleaned();
    void thumbnails_areNotCleanedWithoutBookmarks();
};

void tst_thumbnails::thumbnails_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("thumbnail/000009.PNG"), "no image");
    QFile::remove(directory.file("thumbnail/000002.PNG"));
    COMPARE_RUN(runTool(directory, "thumbnails list %"), 0,
                "File        Size      Bookmark\n"
                "000001.PNG  4x3       Alpha\n"
                "000002.PNG  missing   \xe6\x97\xa5\xe6\x9c\xac <b>\n"
                "000009.PNG  no image\n",
                "");
}

// The library does not pack them.
void tst_thumbnails::thumbnails_areNoLinks()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun before = runTool(directory, "thumbnails list %");
    QVERIFY(QFile::link(directory.file("thumbnail/000001.PNG"),
                        directory.file("thumbnail/000009.PNG")));
    COMPARE_RUN(runTool(directory, "thumbnails list %"), 0, before.output, "");
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
    COMPARE_RUN(runTool(directory, "thumbnails clean %"), 0, "", "");
}

void tst_thumbnails::thumbnails_areFilesAlone_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("piece");
    QTest::newRow("list") << QByteArray("thumbnails list %")
                          << QByteArray("000001.PNG  no image  Alpha\n000002.PNG  no image  ");
    QTest::newRow("pack") << QByteArray("thumbnails pack % -") << QByteArray("<thumbnail");
    QTest::newRow("clean") << QByteArray("thumbnails clean % --dry-run") << QByteArray();
    QTest::newRow("report") << QByteArray("report % -o -") << QByteArray("no picture</span>");
    QTest::newRow("diff") << QByteArray("diff % %") << QByteArray();
    QTest::newRow("check") << QByteArray("check %") << QByteArray("nothing is wrong\n");
    QTest::newRow("repair") << QByteArray("repair % --dry-run") << QByteArray();
}

// A FIFO keeps its reader waiting, and a device may have no end.
void tst_thumbnails::thumbnails_areFilesAlone()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, piece);
    TestDirectory directory;
    writeGoodProfile(directory);
    const QString endless = directory.file("thumbnail/000002.PNG");
    QVERIFY(QFile::remove(directory.file("thumbnail/000001.PNG")) && QFile::remove(endless));
    QCOMPARE(mkfifo(directory.localFile("thumbnail/000001.PNG"), 0600), 0);
    QVERIFY(QFile::link(utf8("/dev/zero"), endless));
    const ToolRun run = runTool(directory, command.constData());
    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.contains(piece), run.output.constData());
}

void tst_thumbnails::thumbnails_arePackedAndUnpacked()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "thumbnails pack % %packed.xml"), 0, "", "");
    const QByteArray one = readFile(directory.file("thumbnail/000001.PNG"));
    QFile::remove(directory.file("thumbnail/000001.PNG"));
    const QByteArray names = "000002.PNG\n000001.PNG\n";
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %packed.xml --dry-run"), 0, names, "");
    QVERIFY(!exists(directory.file("thumbnail/000001.PNG")));
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %packed.xml"), 0, names, "");
    COMPARE_BYTES(readFile(directory.file("thumbnail/000001.PNG")), one);
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %bookmark.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "bookmark.xml' holds no packed thumbnails; nothing was changed\n");
}

// Nobody named the pipe, so nobody waits at its other end.
void tst_thumbnails::thumbnails_areUnpackedInPlaceOfPipes()
{
    TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "thumbnails pack % %packed.xml").status, 0);
    const QString file = directory.file("thumbnail/000001.PNG");
    const QByteArray content = readFile(file);
    QVERIFY(QFile::remove(file));
    QCOMPARE(mkfifo(directory.localFile("thumbnail/000001.PNG"), 0600), 0);
    QCOMPARE(runTool(directory, "thumbnails unpack % %packed.xml").status, 0);
    QVERIFY(QFileInfo(file).isFile());
    COMPARE_BYTES(readFile(file), content);
}

void tst_thumbnails::thumbnails_areUnpackedFromStandardInput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray packed = runTool(directory, "thumbnails pack % -").output;
    const QByteArray one = readFile(directory.file("thumbnail/000001.PNG"));
    for (const char *const command : {"thumbnails unpack % -", "thumbnails unpack % /dev/stdin"}) {
        QFile::remove(directory.file("thumbnail/000001.PNG"));
        COMPARE_RUN(runTool(directory, command, packed), 0, "000002.PNG\n000001.PNG\n", "");
        COMPARE_BYTES(readFile(directory.file("thumbnail/000001.PNG")), one);
    }
    COMPARE_RUN(runTool(directory, "thumbnails unpack % -"), 2, "",
                "velmora-profile: '-' holds no packed thumbnails; nothing was changed\n");
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %none.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "none.xml' cannot be read: No such file or directory\n");
}

void tst_thumbnails::thumbnails_areUnpackedIntoTheProfileAlone()
{
    const TestDirectory directory;
    writeFile(directory.file("packed.xml"),
              "<thumbnail><image src=\"../evil.PNG\"><![CDATA[AAAA]]></image>"
              "<image src=\"plain.PNG\">AAAA</image><image><![CDATA[AAAA]]></image>"
              "<image src=\"good.PNG\"><![CDATA[AAAA]]></image></thumbnail>");
    COMPARE_RUN(
        runTool(directory, "thumbnails unpack % %packed.xml"), 0, "good.PNG\n",
        "velmora-profile: lost: ../evil.PNG: it is not a packed image with a file name of its own\n"
        "velmora-profile: lost: plain.PNG: it is not a packed image with a file name of its own\n"
        "velmora-profile: lost: image: it is not a packed image with a file name of its own\n");
    QVERIFY(!exists(directory.file("evil.PNG")));
    COMPARE_BYTES(readFile(directory.file("thumbnail/good.PNG")), QByteArray(3, '\0'));
}

void tst_thumbnails::thumbnails_areCleaned()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("thumbnail/000009.PNG"), "x");
    writeFile(directory.file("thumbnail/notes.txt"), "x");
    COMPARE_RUN(runTool(directory, "thumbnails clean % --dry-run"), 0, "000009.PNG\n", "");
    QVERIFY(exists(directory.file("thumbnail/000009.PNG")));
    COMPARE_RUN(runTool(directory, "thumbnails clean %"), 0, "000009.PNG\n", "");
    QVERIFY(!exists(directory.file("thumbnail/000009.PNG")));
    QVERIFY(exists(directory.file("thumbnail/000001.PNG")));
    QVERIFY(exists(directory.file("thumbnail/notes.txt")));
}

void tst_thumbnails::thumbnails_areNotCleanedWithoutBookmarks()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QFile::remove(directory.file("bookmark.xml"));
    COMPARE_RUN(
        runTool(directory, "thumbnails clean %"), 2, "",
        "velmora-profile: bookmark.xml is missing: nothing says which files are in use, and "
        "nothing was changed\n");
    QVERIFY(exists(directory.file("thumbnail/000001.PNG")));
}

QTEST_GUILESS_MAIN(tst_thumbnails)
#include "tst_thumbnails.moc"
