// velmora-profile bookmarks, without files of other browsers.

#include "tests/tools/Tool.h"

#include <QtCore/QDir>

class tst_bookmarks : public QObject
{
    Q_OBJECT

private slots:
    void bookmarks_areListed();
    void bookmarks_areAddedAndRemoved();
    void bookmarks_keepTheirThumbnailsInDeepFolders();
    void bookmarks_limitBytes_data();
    void bookmarks_limitBytes();
    void bookmarks_refuseUnknownIds();
    void bookmarks_areFullAt999();
};

void tst_bookmarks::bookmarks_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "bookmarks list %"), 0,
                "Id  Title     URL                        Thumbnail\n"
                "0   Alpha     http://a.example/          000001.PNG\n"
                "1   \xe6\x97\xa5\xe6\x9c\xac <b>  http://b.example/?x=1&y=2  000002.PNG\n",
                "");
    COMPARE_RUN(runTool(directory, "bookmarks list % --json"), 0,
                "[\n    {\n        \"id\": 0,\n        \"thumbnail\": \"000001.PNG\",\n"
                "        \"title\": \"Alpha\",\n        \"url\": \"http://a.example/\"\n    },\n"
                "    {\n        \"id\": 1,\n        \"thumbnail\": \"000002.PNG\",\n"
                "        \"title\": \"\xe6\x97\xa5\xe6\x9c\xac <b>\",\n"
                "        \"url\": \"http://b.example/?x=1&y=2\"\n    }\n]\n",
                "");
}

void tst_bookmarks::bookmarks_areAddedAndRemoved()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "bookmarks add % http://first/ One --front"), 0, "", "");
    COMPARE_RUN(runTool(directory, "bookmarks add % http://last/"), 0, "", "");
    COMPARE_RUN(runTool(directory, "bookmarks remove % 2 1"), 0, "", "");
    COMPARE_BYTES(readFile(directory.file("bookmark.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<bookmarks docInfo=\"1.0\">\n"
                  "    <bookmark id=\"000\">\n"
                  "        <href>http://first/</href>\n"
                  "        <title>One</title>\n"
                  "        <thumbnail>thumbnail/</thumbnail>\n"
                  "    </bookmark>\n"
                  "    <bookmark id=\"001\">\n"
                  "        <href>http://last/</href>\n"
                  "        <title/>\n"
                  "        <thumbnail>thumbnail/</thumbnail>\n"
                  "    </bookmark>\n"
                  "</bookmarks>\n");
}

// The store drops paths over 256 bytes, and a folder's path would be part of them.
void tst_bookmarks::bookmarks_keepTheirThumbnailsInDeepFolders()
{
    const TestDirectory directory;
    const QString folder = directory.path() + QString(200, QLatin1Char('d')) + QLatin1Char('/')
                           + QString(100, QLatin1Char('e'));
    QVERIFY(QDir().mkpath(folder));
    writeFile(folder + utf8("/bookmark.xml"),
              "<bookmarks><bookmark><href>http://a/</href><title>A</title>"
              "<thumbnail>000001.PNG</thumbnail></bookmark></bookmarks>");

    QCOMPARE(runTool({utf8("bookmarks"), utf8("add"), folder, utf8("http://b/")}).status, 0);

    QVERIFY(readFile(folder + utf8("/bookmark.xml")).contains("<thumbnail>000001.PNG</thumbnail>"));
}

void tst_bookmarks::bookmarks_limitBytes_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("errors");
    const QString url = utf8("http://x/") + QString(247, QLatin1Char('a'));
    const QString title = QString(97, QLatin1Char('t')) + utf8("\xe3\x81\x82");
    QTest::newRow("256 bytes of URL") << url << QString() << 0 << QByteArray();
    QTest::newRow("257 bytes of URL")
        << url + QLatin1Char('a') << QString() << 2
        << QByteArray("velmora-profile: '") + url.toUtf8()
               + "a': its URL has 257 bytes, over the limit of 256; nothing was changed\n";
    QTest::newRow("100 bytes of title") << utf8("http://x/") << title << 0 << QByteArray();
    QTest::newRow("101 bytes of title") << utf8("http://x/") << title + QLatin1Char('t') << 0
                                        << QByteArray("velmora-profile: lost: ") + title.toUtf8()
                                               + "t: its title of 101 bytes is cut to 100\n";
}

void tst_bookmarks::bookmarks_limitBytes()
{
    QFETCH(QString, url);
    QFETCH(QString, title);
    QFETCH(int, status);
    QFETCH(QByteArray, errors);
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("bookmarks"), utf8("add"), directory.path(), url, title}), status, "",
                errors);
    QCOMPARE(exists(directory.file("bookmark.xml")), status == 0);
    if (!errors.isEmpty() && status == 0) {
        const TestDirectory strict;
        QCOMPARE(
            runTool({utf8("bookmarks"), utf8("add"), strict.path(), url, title, utf8("--strict")})
                .status,
            2);
        COMPARE_BYTES(contentsOf(strict.path()), "");
    }
}

void tst_bookmarks::bookmarks_refuseUnknownIds()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    for (const char *const id : {"2", "-1", "x"}) {
        COMPARE_RUN(runTool(directory, (QByteArray("bookmarks remove % 0 -- ") + id).constData()),
                    2, "",
                    QByteArray("velmora-profile: '") + id
                        + "' is not an id; there are 2, numbered from 0; 'list' shows them\n");
    }
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_bookmarks::bookmarks_areFullAt999()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 998; ++i) {
        entries += "<bookmark><href>http://x/</href><title/><thumbnail/></bookmark>";
    }
    writeFile(directory.file("bookmark.xml"), "<bookmarks>" + entries + "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks add % http://y/"), 0, "", "");
    COMPARE_RUN(
        runTool(directory, "bookmarks add % http://z/"), 2, "",
        "velmora-profile: 'http://z/': the list already holds 999 entries; nothing was changed\n");
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks>" + entries + "<bookmark/><bookmark/>" + "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks remove % 0"), 2, "",
                "velmora-profile: bookmark.xml holds 1000 entries, and at most 999 can be written; "
                "nothing was changed; run 'velmora-profile repair' first\n");
}

QTEST_GUILESS_MAIN(tst_bookmarks)
#include "tst_bookmarks.moc"
