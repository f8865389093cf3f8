// velmora-profile cookies, without files of other browsers.

#include "tests/tools/Tool.h"

#include <QtCore/QFileInfo>

class tst_cookies : public QObject
{
    Q_OBJECT

private slots:
    void cookies_areListed();
    void cookies_areListedAsJson();
    void cookies_goToXmlAndBack();
    void cookies_loseHttpOnlyAloudAndNotStrictly();
    void cookies_loseThoseBehindThe20th();
    void cookies_areNotReplacedByWhatIsNone_data();
    void cookies_areNotReplacedByWhatIsNone();
    void cookies_replaceNoDocumentOfAnotherKind();
    void cookies_goThroughStandardInputAndOutput();
    void cookies_stayWhereNewOnesDoNotFit_data();
    void cookies_stayWhereNewOnesDoNotFit();
    void cookies_toIniRefusesADamagedCookieFile();
    void cookies_arePrivateWhenNew();
};

void tst_cookies::cookies_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "cookies list %"), 0,
                "Site        Name  Path   Secure  HttpOnly  Expires               Value\n"
                ".a.example  sid   /      yes     yes       session               ********\n"
                "b.example   lang  /docs  no      no        2050-01-01T00:00:00Z  ********\n",
                "");
    COMPARE_RUN(runTool(directory, "cookies list % --show-secrets"), 0,
                "Site        Name  Path   Secure  HttpOnly  Expires               Value\n"
                ".a.example  sid   /      yes     yes       session               abc\n"
                "b.example   lang  /docs  no      no        2050-01-01T00:00:00Z  en\n",
                "");
}

void tst_cookies::cookies_areListedAsJson()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun masked = runTool(directory, "cookies list % --json");
    QVERIFY2(masked.output.contains("\"value\": \"********\""), masked.output.constData());
    QVERIFY2(!masked.output.contains("abc"), masked.output.constData());
    const ToolRun shown = runTool(directory, "cookies list % --json --show-secrets");
    QCOMPARE(jsonOf(shown).array().at(0).toObject().value(utf8("value")).toString(), utf8("abc"));
}

void tst_cookies::cookies_goToXmlAndBack()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    COMPARE_BYTES(readFile(directory.file("cookie.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<cookie docInfo=\"1.0\">\n"
                  "    <webSiteInfo id=\"000\">\n"
                  "        <website>.a.example</website>\n"
                  "        <name>sid</name>\n"
                  "        <path>/</path>\n"
                  "        <secure>true</secure>\n"
                  "        <expires/>\n"
                  "        <contents><![CDATA[abc]]></contents>\n"
                  "    </webSiteInfo>\n"
                  "    <webSiteInfo id=\"001\">\n"
                  "        <website>b.example</website>\n"
                  "        <name>lang</name>\n"
                  "        <path>/docs</path>\n"
                  "        <secure>false</secure>\n"
                  "        <expires>2050/01/01 00:00:00</expires>\n"
                  "        <contents><![CDATA[en]]></contents>\n"
                  "    </webSiteInfo>\n"
                  "</cookie>\n");
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-ini %"), 0, "", "");
    QVERIFY(runTool(directory, "cookies list %")
                .output.contains(".a.example  sid   /      yes     no        session"));
    COMPARE_RUN(runTool(directory, "cookies to-ini % %none.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "none.xml' cannot be read: No such file or directory\n");
}

void tst_cookies::cookies_loseHttpOnlyAloudAndNotStrictly()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "cookies to-xml % --strict"), 2, "",
                "velmora-profile: lost: sid of .a.example/: the document has no room for HttpOnly\n"
                "velmora-profile: 1 loss, and --strict was asked for; nothing was changed\n");
    QVERIFY(!exists(directory.file("cookie.xml")));
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-xml %"), 2, "",
                "velmora-profile: there is no cookie.ini to convert; nothing was changed\n");
}

void tst_cookies::cookies_loseThoseBehindThe20th()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 21; ++i) {
        entries += "<webSiteInfo id=\"" + QByteArray::number(i) + "\"><website>w</website><name>n"
                   + QByteArray::number(i) + "</name><path>/</path><secure>false</secure><expires>"
                   + (i == 3 ? "soon" : "") + "</expires><contents><![CDATA[v]]></contents>"
                   + "</webSiteInfo>";
    }
    writeFile(directory.file("cookie.xml"), "<cookie>" + entries + "</cookie>");
    COMPARE_RUN(runTool(directory, "cookies to-ini %"), 0, "",
                "velmora-profile: lost: n3 of w: its expiry 'soon' does not parse: it becomes a "
                "session cookie\n"
                "velmora-profile: lost: n20 of w: only the first 20 are converted\n");
    QCOMPARE(jsonOf(runTool(directory, "cookies list % --json")).array().size(), 20);
}

void tst_cookies::cookies_areNotReplacedByWhatIsNone_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("empty") << QByteArray() << QByteArray("is empty; nothing was changed");
    QTest::newRow("blank") << QByteArray(" \n") << QByteArray("is empty; nothing was changed");
    QTest::newRow("another kind") << QByteArray(
        "<bookmarks><bookmark><href>u</href></bookmark></bookmarks>")
                                  << QByteArray("is no cookie document; nothing was changed");
    QTest::newRow("damaged") << QByteArray("<cookie>\n<webSiteInfo id=\"000\"><website>w</website>"
                                           "<name>n</name></webSiteInfo>\n<webSiteInfo>")
                             << QByteArray("is damaged at line 3, ");
}

// From a file, and from where it can be read only once.
void tst_cookies::cookies_areNotReplacedByWhatIsNone()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, reason);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("other.xml"), document);
    const QByteArray before = contentsOf(directory.path());

    for (const char *const file : {"%other.xml", "-", "/dev/stdin"}) {
        const ToolRun run =
            runTool(directory, QByteArray("cookies to-ini % ").append(file).constData(), document);

        QVERIFY2(isOneLine(run.errors) && run.errors.contains("' " + reason),
                 run.errors.constData());
        QCOMPARE(run.status, 2);
        COMPARE_BYTES(contentsOf(directory.path()), before);
    }
}

void tst_cookies::cookies_replaceNoDocumentOfAnotherKind()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runTool(directory, "cookies to-xml % %bookmark.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "bookmark.xml' is no cookie document; nothing was changed\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
    writeFile(directory.file("new.xml"), "");
    QCOMPARE(runTool(directory, "cookies to-xml % %new.xml").status, 0);
    QVERIFY(readFile(directory.file("new.xml")).contains("<name>lang</name>"));
}

void tst_cookies::cookies_goThroughStandardInputAndOutput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray document = runTool(directory, "cookies to-xml % -").output;
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-ini % -", document), 0, "", "");
    QCOMPARE(jsonOf(runTool(directory, "cookies list % --json")).array().size(), 2);
}

void tst_cookies::cookies_stayWhereNewOnesDoNotFit_data()
{
    QTest::addColumn<int>("blocks");
    QTest::newRow("none") << 0;
    QTest::newRow("a part") << 2;
}

void tst_cookies::cookies_stayWhereNewOnesDoNotFit()
{
    QFETCH(int, blocks);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("cookies.txt"),
              "# Netscape HTTP Cookie File\nb.example\tFALSE\t/docs\tFALSE\t0\tlang\t"
                  + QByteArray(4000, 'v') + "\n");
    const QByteArray before = contentsOf(directory.path());

    const ToolRun run = runInBlocks(blocks, directory, "cookies import % %cookies.txt");

    COMPARE_BYTES(run.errors, "velmora-profile: cookie.ini could not be written; nothing was "
                              "changed, look at the space for temporary files\n");
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_cookies::cookies_toIniRefusesADamagedCookieFile()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    writeFile(directory.file("cookie.ini"), "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x3)\n");
    const QByteArray before = contentsOf(directory.path());
    const ToolRun run = runTool(directory, "cookies to-ini %");
    QVERIFY2(isOneLine(run.errors) && run.errors.contains("cookie.ini is damaged: "),
             run.errors.constData());
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_cookies::cookies_arePrivateWhenNew()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    QFile::remove(directory.file("cookie.ini"));
    QCOMPARE(runTool(directory, "cookies to-ini %").status, 0);
    for (const char *const name : {"cookie.xml", "cookie.ini"}) {
        QCOMPARE(QFileInfo(directory.file(name)).permissions()
                     & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }
}

QTEST_GUILESS_MAIN(tst_cookies)
#include "tst_cookies.moc"
