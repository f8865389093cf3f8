// What velmora-profile finds wrong, and nothing more.

#include "tests/tools/Tool.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <sys/stat.h>

class tst_check : public QObject
{
    Q_OBJECT

private slots:
    void check_isCleanOnAGoodProfile();
    void check_finds_data();
    void check_finds();
    void check_findsNothingIn_data();
    void check_findsNothingIn();
    void check_findsFilesThatOthersCanRead_data();
    void check_findsFilesThatOthersCanRead();
    void check_looksAtEveryBitOfTheMode_data();
    void check_looksAtEveryBitOfTheMode();
    void check_findsWhatAnInterruptedSaveLeft_data();
    void check_findsWhatAnInterruptedSaveLeft();
    void check_leavesCopiesAlone_data();
    void check_leavesCopiesAlone();
    void check_findsADamagedCookieFile_data();
    void check_findsADamagedCookieFile();
    void check_failsOnWhatCannotBeRead();
    void check_printsJson();
};

namespace
{
QByteArray finding(const char *file, const QByteArray &what, const char *meaning,
                   const char *action)
{
    return QByteArray(file) + ": " + what + "\n  means: " + meaning + "\n  to do: " + action + "\n";
}

QByteArray repeated(int count, const QByteArray &entry)
{
    QByteArray all;
    for (int i = 0; i < count; ++i) {
        QByteArray numbered = entry;
        all += numbered.replace("%", QByteArray::number(i).rightJustified(3, '0'));
    }
    return all;
}

QByteArray bookmark(const QByteArray &url, const QByteArray &title, const QByteArray &thumbnail)
{
    return "<bookmarks><bookmark id=\"000\"><href>" + url + "</href><title>" + title + "</title>"
           + thumbnail + "</bookmark></bookmarks>";
}

const char kPicture[] = "<thumbnail>000001.PNG</thumbnail>";
} // namespace

void tst_check::check_isCleanOnAGoodProfile()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
    const TestDirectory empty;
    COMPARE_RUN(runTool(empty, "check %"), 0, "nothing is wrong\n", "");
}

void tst_check::check_finds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("found");
    const QByteArray bookmarks("bookmark.xml");
    const QByteArray history("visit.xml");
    const QByteArray fonts("fontlist.xml");
    const QByteArray auth("authinfo.xml");
    const QByteArray cookies("cookie.xml");
    const QByteArray common("repostry.xml");
    const char kRepair[] = "run 'velmora-profile repair'";

    QTest::newRow("empty document")
        << fonts << QByteArray("\n")
        << finding("fontlist.xml", "it is empty", "the browser starts without what it should hold",
                   "restore it, or remove it to start afresh");
    QTest::newRow("damaged document")
        << fonts << QByteArray("<fontlist>\n<font id=\"000\">A</font>\n<font id=\"001\">B</f")
        << finding("fontlist.xml",
                   "it is damaged at line 3, column 19: Premature end of document. (1 entry "
                   "before it)",
                   "the browser reads up to the damage, and its next save loses what follows",
                   kRepair);
    QTest::newRow("wrong root")
        << fonts << QByteArray("<fonts><font id=\"000\">A</font></fonts>")
        << finding("fontlist.xml", "its root is named 'fonts', not 'fontlist'",
                   "the browser reads its entries anyway; it may be another file's content",
                   "check whose content it is; if it is right, run 'velmora-profile repair'");
    QTest::newRow("1000 entries")
        << fonts << "<fontlist>" + repeated(1000, "<font id=\"%\">A</font>") + "</fontlist>"
        << finding("fontlist.xml", "it holds 1000 entries, 999 can be reached",
                   "the browser never shows the others, and may drop them",
                   "remove some entries, or run 'velmora-profile repair', which keeps the first "
                   "999");
    QTest::newRow("missing id") << fonts << QByteArray("<fontlist><font>A</font></fontlist>")
                                << finding("fontlist.xml",
                                           "1 entry without an id, 0 with the id of another",
                                           "none: the browser numbers them when it loads the file",
                                           "nothing, or run 'velmora-profile repair'");
    QTest::newRow("repeated id of a cookie")
        << cookies
        << QByteArray("<cookie><webSiteInfo id=\"000\"/><webSiteInfo id=\"0\"/></cookie>")
        << finding("cookie.xml", "0 entries without an id, 1 with the id of another",
                   "a conversion does not see these cookies", kRepair);
    QTest::newRow("wrong name of an entry")
        << fonts << QByteArray("<fontlist><typeface id=\"000\">A</typeface></fontlist>")
        << finding("fontlist.xml", "entry 0 is named 'typeface', not 'font'",
                   "the browser's count leaves it out, so that the last entry is not shown",
                   "remove the element");
    QTest::newRow("21 cookies")
        << cookies << "<cookie>" + repeated(21, "<webSiteInfo id=\"%\"/>") + "</cookie>"
        << finding("cookie.xml", "it holds 21 cookies, 20 are converted",
                   "the others never come back to the browser, and may pile up",
                   "remove the file and run 'velmora-profile cookies to-xml' for a fresh one");
    QTest::newRow("URL of 257 bytes")
        << bookmarks << bookmark(QByteArray(257, 'u'), "T", kPicture)
        << finding("bookmark.xml", "entry 0 (T): href has 257 bytes, over the limit of 256",
                   "the browser opens about:blank instead",
                   "shorten it in the file, or remove the entry");
    QTest::newRow("title of 101 bytes")
        << bookmarks << bookmark("u", QByteArray(101, 't'), kPicture)
        << finding("bookmark.xml",
                   "entry 0 (" + QByteArray(60, 't')
                       + "...): title has 101 bytes, over the limit of 100",
                   "the browser shows no title", "shorten it in the file, or remove the entry");
    QTest::newRow("font of 257 bytes")
        << fonts << "<fontlist><font id=\"000\">" + QByteArray(257, 'f') + "</font></fontlist>"
        << finding("fontlist.xml",
                   "entry 0 (" + QByteArray(60, 'f')
                       + "...): font has 257 bytes, over the limit of 256",
                   "the browser offers a font without a name",
                   "shorten it in the file, or remove the entry");
    QTest::newRow("port of 6 bytes")
        << auth
        << QByteArray("<authentication><authInfo id=\"000\"><hostName>h</hostName>"
                      "<portNum>123456</portNum></authInfo></authentication>")
        << finding("authinfo.xml", "entry 0 (h): portNum has 6 bytes, over the limit of 5",
                   "the browser never uses these credentials",
                   "shorten it in the file, or remove the entry");
    QTest::newRow("password of 273 bytes")
        << auth
        << "<authentication><authInfo id=\"000\"><hostName>h</hostName><passwd><![CDATA["
               + QByteArray(273, 'p').toBase64() + "]]></passwd></authInfo></authentication>"
        << finding("authinfo.xml", "entry 0 (h): passwd has 273 bytes, over the limit of 272",
                   "the browser sends no password", "shorten it in the file, or remove the entry");
    QTest::newRow("date of a visit")
        << history
        << QByteArray("<history><pageInfo id=\"000\"><url>http://u/</url>"
                      "<dateTime>2026/1/2 3:4</dateTime></pageInfo></history>")
        << finding("visit.xml", "entry 0 (http://u/): the date '2026/1/2 3:4' does not parse",
                   "the browser puts the visit last, and its next save erases the date",
                   "write it as yyyy/MM/dd hh:mm in the file, or remove the entry");
    QTest::newRow("expiry of a cookie")
        << cookies
        << QByteArray("<cookie><webSiteInfo id=\"000\"><website>w</website><name>n</name>"
                      "<expires>soon</expires></webSiteInfo></cookie>")
        << finding("cookie.xml", "entry 0 (n of w): the date 'soon' does not parse",
                   "converted to cookie.ini, it ends with the session",
                   "write it as yyyy/MM/dd hh:mm:ss in the file, or remove the entry");
    QTest::newRow("no thumbnail")
        << bookmarks << bookmark("u", "T", "<thumbnail>thumbnail/</thumbnail>")
        << finding("bookmark.xml", "entry 0 (T) has no thumbnail",
                   "the browser shows the bookmark without a picture",
                   "nothing: the browser takes one when the page is bookmarked again");
    QTest::newRow("no element for the thumbnail")
        << bookmarks << bookmark("u", "T", "")
        << finding("bookmark.xml", "entry 0 (T) has no thumbnail element",
                   "the browser shows no thumbnail for it or any bookmark after it",
                   "remove the bookmark and add it again");
    QTest::newRow("missing thumbnail")
        << bookmarks << bookmark("u", "T", "<thumbnail>000007.PNG</thumbnail>")
        << finding("bookmark.xml", "entry 0 (T) names thumbnail/000007.PNG, which is missing",
                   "the browser shows the bookmark without a picture",
                   "restore the file, or unpack it with 'velmora-profile thumbnails unpack'");
    QTest::newRow("unknown word")
        << common
        << QByteArray("<repostry_common><cookie><acceptCookie>No</acceptCookie></cookie>"
                      "</repostry_common>")
        << finding("repostry.xml",
                   "cookie.acceptCookie: 'No' is not a value that the browser knows",
                   "the browser uses its default 'accept'",
                   "run 'velmora-profile prefs set' with accept or refuse");
    QTest::newRow("host of 254 bytes")
        << common
        << "<repostry_common><proxy><hostName>" + QByteArray(254, 'h')
               + "</hostName></proxy></repostry_common>"
        << finding("repostry.xml", "proxy.hostName: 254 bytes, over the limit of 253",
                   "the browser uses its default ''",
                   "run 'velmora-profile prefs set' with at most 253 bytes of UTF-8");
    QTest::newRow("security without version")
        << common
        << QByteArray("<repostry_common><security><enableSSL30>true</enableSSL30></security>"
                      "</repostry_common>")
        << finding("repostry.xml", "security has no version",
                   "the browser's next load switches SSL 3.0 off, whatever the file says",
                   "nothing; to keep SSL 3.0 on, set security.enableSSL30 once");
}

void tst_check::check_finds()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, found);
    const TestDirectory directory;
    const QString path = directory.file(file.constData());
    QVERIFY(QDir(directory.path()).mkdir(utf8("thumbnail")));
    if (content.contains("000001.PNG")) {
        writeFile(directory.file("thumbnail/000001.PNG"), "x");
    }
    writeFile(path, content);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    COMPARE_RUN(runTool(directory, "check %"), 1, found + "1 finding\n", "");
}

void tst_check::check_findsNothingIn_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("999 entries") << QByteArray(
        "fontlist.xml") << "<fontlist>" + repeated(999, "<font id=\"%\">A</font>") + "</fontlist>";
    QTest::newRow("20 cookies") << QByteArray(
        "cookie.xml") << "<cookie>" + repeated(20, "<webSiteInfo id=\"%\"/>") + "</cookie>";
    QTest::newRow("URL of 256 bytes and title of 100")
        << QByteArray("bookmark.xml")
        << bookmark(QByteArray(256, 'u'), QByteArray(97, 't') + "\xe3\x81\x82", kPicture);
    QTest::newRow("font of 256 bytes")
        << QByteArray("fontlist.xml")
        << "<fontlist><font id=\"000\">" + QByteArray(256, 'f') + "</font></fontlist>";
    QTest::newRow("longest credentials")
        << QByteArray("authinfo.xml")
        << "<authentication><authInfo id=\"000\"><hostName>" + QByteArray(256, 'h')
               + "</hostName><portNum>12345</portNum><passwd><![CDATA["
               + QByteArray(272, 'p').toBase64() + "]]></passwd></authInfo></authentication>";
    QTest::newRow("a word of old")
        << QByteArray("repostry.xml")
        << QByteArray("<repostry_common><cache><cacheDeleteTiming>logout</cacheDeleteTiming>"
                      "</cache></repostry_common>");
    QTest::newRow("an empty home page")
        << QByteArray("repostry_private.xml")
        << QByteArray("<repostry><pageInfo><home/></pageInfo></repostry>");
}

void tst_check::check_findsNothingIn()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, content);
    const TestDirectory directory;
    const QString path = directory.file(file.constData());
    if (content.contains("000001.PNG")) {
        QVERIFY(QDir(directory.path()).mkdir(utf8("thumbnail")));
        writeFile(directory.file("thumbnail/000001.PNG"), "x");
    }
    writeFile(path, content);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
}

void tst_check::check_findsFilesThatOthersCanRead_data()
{
    QTest::addColumn<QByteArray>("file");
    for (const char *const file : {"authinfo.xml", "cookie.ini", "cookie.xml", "repostry.xml"}) {
        QTest::newRow(file) << QByteArray(file);
    }
}

void tst_check::check_findsFilesThatOthersCanRead()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeGoodProfile(directory);
    runTool(directory, "cookies to-xml %");
    QFile::setPermissions(directory.file(file.constData()),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    COMPARE_RUN(runTool(directory, "check %"), 1,
                finding(file.constData(), "users other than its owner can read or write it",
                        "every account on the device can get at the secrets in it",
                        "run 'chmod 600' on it, or 'velmora-profile repair'")
                    + "1 finding\n",
                "");
    COMPARE_RUN(
        runTool(directory, "repair %"), 0,
        file + ": users other than its owner could read or write it: its mode is now 0600\n", "");
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
}

void tst_check::check_looksAtEveryBitOfTheMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isOpen");
    for (const int open : {0640, 0620, 0604, 0602}) {
        QTest::newRow(QByteArray::number(open, 8).constData()) << open << true;
    }
    for (const int closed : {0600, 0700, 0610, 0601}) {
        QTest::newRow(QByteArray::number(closed, 8).constData()) << closed << false;
    }
}

void tst_check::check_looksAtEveryBitOfTheMode()
{
    QFETCH(int, mode);
    QFETCH(bool, isOpen);
    const TestDirectory directory;
    const QString path = directory.file("cookie.xml");
    writeFile(path, "<cookie/>");
    QCOMPARE(chmod(QFile::encodeName(path).constData(), mode_t(mode)), 0);
    QCOMPARE(runTool(directory, "check %").status, isOpen ? 1 : 0);
    COMPARE_RUN(runTool(directory, "repair %"), 0,
                isOpen ? "cookie.xml: users other than its owner could read or write it: its mode "
                         "is now 0600\n"
                       : "nothing to repair\n",
                "");
}

void tst_check::check_findsWhatAnInterruptedSaveLeft_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("what");
    for (const char *const file : {".velmora-save-12-3", "cookie.xml.aQBzcX", "cookie.ini.XyZabc",
                                   "thumbnail/000001.PNG.aaAaaa", "thumbnail/.velmora-save-1-1"}) {
        QTest::newRow(file) << QByteArray(file)
                            << finding(file, "a temporary file that was left behind",
                                       "none; it takes up space, and may hold secrets",
                                       "remove it when no browser is running");
    }
    QTest::newRow("lock") << QByteArray("cookie.ini.lock")
                          << finding("cookie.ini.lock", "a lock that was left behind",
                                     "the next save of the cookies may wait half a minute for it",
                                     "remove it when no browser is running");
}

void tst_check::check_findsWhatAnInterruptedSaveLeft()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, what);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file(file.constData()), "x");
    COMPARE_RUN(runTool(directory, "check %"), 1, what + "1 finding\n", "");
}

void tst_check::check_leavesCopiesAlone_data()
{
    QTest::addColumn<QByteArray>("file");
    for (const char *const file :
         {"visit.xml.backup", "bookmark.xml.BeFore", "cookie.xml.BACKUP", "cookie.ini.backup",
          "cookie.xml.260102", "thumbnail/000001.PNG.backup", ".velmora-save-of-mine"}) {
        QTest::newRow(file) << QByteArray(file);
    }
}

// Who is told to remove them may have nothing else left.
void tst_check::check_leavesCopiesAlone()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file(file.constData()), "x");
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
}

void tst_check::check_findsADamagedCookieFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("damage");
    QTest::newRow("two of three missing") << QByteArray("\\0\\0\\0\\x3\\0\\0\\0\\x3z=b")
                                          << QByteArray("it promises 3 cookies and holds 1");
    QTest::newRow("negative count")
        << QByteArray("\\xff\\xff\\xff\\xff") << QByteArray("it promises -1 cookies and holds 0");
}

void tst_check::check_findsADamagedCookieFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, damage);
    const TestDirectory directory;
    writeFile(directory.file("cookie.ini"), "[Cookie]\ncookies=@ByteArray(" + bytes + ")\n");
    QFile::setPermissions(directory.file("cookie.ini"), QFile::ReadOwner | QFile::WriteOwner);
    COMPARE_RUN(runTool(directory, "check %"), 1,
                finding("cookie.ini", "it is damaged: " + damage,
                        "the browser reads what is whole and loses the rest",
                        "run 'velmora-profile repair'")
                    + "1 finding\n",
                "");
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 2);
    QCOMPARE(runTool(directory, "repair %").status, 1);
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
}

void tst_check::check_failsOnWhatCannotBeRead()
{
    const TestDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir(utf8("visit.xml")));
    COMPARE_RUN(runTool(directory, "check %"), 2,
                finding("visit.xml", "it cannot be read",
                        "the browser starts without what it holds", "check its owner and mode")
                    + "1 finding\n",
                "");
}

void tst_check::check_printsJson()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "");
    const ToolRun run = runTool(directory, "check % --json");
    QCOMPARE(run.status, 1);
    const QJsonObject object = jsonOf(run).array().at(0).toObject();
    QCOMPARE(object.keys(),
             QStringList({utf8("action"), utf8("file"), utf8("meaning"), utf8("what")}));
    QCOMPARE(object.value(utf8("file")).toString(), utf8("fontlist.xml"));
    QCOMPARE(object.value(utf8("what")).toString(), utf8("it is empty"));
    const TestDirectory empty;
    COMPARE_RUN(runTool(empty, "check % --json"), 0, "[\n]\n", "");
}

QTEST_GUILESS_MAIN(tst_check)
#include "tst_check.moc"
