// The schemas in docs/schema/ accept what the stores write, and refuse what they never write. Here
// xmllint applies them; SavedDocuments does wherever a test saves.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

#include "tests/docs/FormatsPage.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SavedDocuments.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtGui/QImage>

namespace
{
// More than are numbered.
const int kEntries = 1001;
const int kMax = 20;

// xmllint's own.
const int kConforms = 0;
const int kRefused = 3;

QString full(int characters) { return QString(characters, QLatin1Char('x')); }

// A text of this many bytes, in characters of three bytes each.
QString fullOfKana(int bytes) { return QString(bytes / 3, QChar(0x3042)); }

void setEverySwitch(VLMC_BrowserCommonSetting &store, char code)
{
    store.setRcvCookieInfo(code);
    store.setUseCacheInfo(code);
    store.setCacheDeleteTiming(code);
    store.setSWKeyBoardTypeInfo(code);
    store.setUseJavaScriptInfo(code);
    store.setPlayFlashInfo(code);
    store.setUseProxyInfo(code);
    store.setUseProxyHttpInfo(code);
    store.setUseProxyCertificationInfo(code);
    store.setUseSSL30(code);
    store.setUseTLS10(code);
    store.setUseTLS11(code);
    store.setUseTLS12(code);
}

void saveCommon(QString directory)
{
    VLMC_BrowserCommonSetting store;
    store.loadSetting(&directory);
    setEverySwitch(store, 0);
    setEverySwitch(store, 1);
    store.setProxyServerStr(full(253));
    store.setProxyHttpPortStr(full(5));
    store.setProxyHttpsPortStr(QString());
    store.setNoProxyDomainStr(fullOfKana(253));
    store.setProxyAccountStr(QByteArray(80, '\0'));
    store.setProxyPasswordStr(QByteArray(79, '\xff'));
    store.saveSetting(&directory);
}

void saveUser(QString directory)
{
    VLMC_BrowserUserSetting store;
    store.loadSetting(&directory);
    store.setHomePage(full(256));
    store.setLastPage(QString());
    store.setStartUp(1);
    store.setZoomInfo(11);
    store.setFontName(fullOfKana(256));
    store.setCookieDeleteTiming(3);
    store.CnvOldtypeDeletetiming();
    store.saveSetting(&directory);
}

void saveBookmarks(QString directory)
{
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    store.loadBookmark(&directory, kMax, lastNumber);
    for (int i = 0; i < kEntries; ++i) {
        VLMS_Bookmark bookmark = {i % 2 ? full(300) : fullOfKana(300), full(256), full(256)};
        store.setBookmark(&bookmark, char(i % 2));
    }
    VLMS_Bookmark empty;
    store.setBookmark(&empty, 1);
    store.saveBookmark(&directory, kMax);
}

void saveThumbnails(QString directory)
{
    QImage image(120, 90, QImage::Format_RGB32);
    image.fill(0);
    image.save(directory + utf8("000001.PNG"), "PNG");
    writeFile(directory + utf8(".png"), QByteArray());
    writeFile(directory + utf8("a b.pNg"), QByteArray("no image"));
    QByteArray pictures = directory.toLocal8Bit();
    QByteArray packed = (directory + utf8("thumbnails.xml")).toLocal8Bit();
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailPngToXML(pictures.data(), packed.data());
}

void saveHistory(QString directory)
{
    VLMC_HistorySetting store;
    store.loadHistory(&directory, kMax);
    VLMS_History visit = {fullOfKana(900), full(5000),
                          QDateTime(QDate(2026, 12, 31), QTime(23, 59))};
    for (int i = 0; i < kEntries; ++i) {
        store.setHistory(&visit);
    }
    VLMS_History empty;
    store.setHistory(&empty);
    store.saveHistory(&directory, kMax);
}

void saveCookies(QString directory)
{
    QNetworkCookie lasting("name", QByteArray(4096, 'v'));
    lasting.setDomain(utf8(".example.com"));
    lasting.setPath(utf8("/"));
    lasting.setSecure(true);
    lasting.setExpirationDate(QDateTime(QDate(2026, 2, 28), QTime(23, 59, 59), Qt::UTC));
    QNetworkCookie passing("a", "]]>");
    QByteArray iniFolder = directory.toLocal8Bit();
    QByteArray packed = (directory + utf8("cookies.xml")).toLocal8Bit();
    VLMC_CookieSetting store;
    store.saveCookieInfo(QList<QNetworkCookie>() << lasting << passing, &directory, kMax);
    store.convertCookieIniToXML(iniFolder.data(), packed.data());
}

void saveCredentials(QString directory)
{
    VLMC_AuthSetting store;
    store.loadAuthInfo(&directory, kMax);
    for (int i = 0; i < kEntries; ++i) {
        VLMS_AuthInfo info = {fullOfKana(256), full(5), static_cast<unsigned char>(i % 4),
                              QByteArray(272, '\xff'), QByteArray(i % 273, '\0')};
        store.setAuthInfo(&info);
    }
    store.saveAuthInfo(&directory, kMax);
}

void saveFonts(QString directory)
{
    VLMC_FontListSetting store;
    store.loadFontList(directory);
    for (int i = 0; i < kEntries; ++i) {
        store.addFont(i % 2 ? full(256) : fullOfKana(256));
    }
    store.saveFontList(directory);
}

struct Kind {
    const char *title;
    const char *schema;
    const char *fileName;
    void (*save)(QString directory);
};

const Kind kKinds[] = {
    {"repostry.xml", "repostry.rng", "repostry.xml", saveCommon},
    {"repostry_private.xml", "repostry_private.rng", "repostry_private.xml", saveUser},
    {"bookmark.xml and thumbnail/", "bookmark.rng", "bookmark.xml", saveBookmarks},
    {"Packed thumbnails", "thumbnail.rng", "thumbnails.xml", saveThumbnails},
    {"visit.xml", "visit.rng", "visit.xml", saveHistory},
    {"Cookie XML", "cookies.rng", "cookies.xml", saveCookies},
    {"authinfo.xml", "authinfo.rng", "authinfo.xml", saveCredentials},
    {"fontlist.xml", "fontlist.rng", "fontlist.xml", saveFonts},
};

void addKinds()
{
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<QByteArray>("schema");
    QTest::addColumn<int>("row");
    int row = 0;
    for (const Kind &kind : kKinds) {
        QTest::newRow(kind.schema) << QByteArray(kind.title) << QByteArray(kind.schema) << row;
        ++row;
    }
}

QString schemaPath(const QByteArray &schema)
{
    return utf8(SCHEMA_FOLDER) + QLatin1Char('/') + QString::fromLatin1(schema.constData());
}

// What xmllint makes of the document: its exit status.
int judge(const QByteArray &schema, const QByteArray &document)
{
    QProcess xmllint;
    xmllint.start(utf8("xmllint"), QStringList()
                                       << utf8("--noout") << utf8("--nonet") << utf8("--relaxng")
                                       << schemaPath(schema) << utf8("-"));
    if (!xmllint.waitForStarted()) {
        qWarning("xmllint does not start; it comes with the package libxml2-utils");
        return -1;
    }
    xmllint.write(document);
    xmllint.closeWriteChannel();
    xmllint.waitForFinished();
    const QByteArray said = xmllint.readAllStandardError();
    if (said != "- validates\n") {
        qWarning("%s", said.left(400).constData());
    }
    return xmllint.exitCode();
}

// A row: the sample of a kind with its first such text changed.
void wrong(const char *title, const char *name, const QByteArray &before, const QByteArray &after)
{
    const QByteArray row = QByteArray(title) + ": " + name;
    QTest::newRow(row.constData()) << QByteArray(title) << before << after;
}

// What would be an element over its limit.
QByteArray element(const char *name, const QByteArray &text)
{
    return QByteArray("<") + name + ">" + text + "</" + name + ">";
}

QByteArray letters(int count) { return QByteArray(count, 'x'); }

QByteArray base64OfBytes(int count) { return letters(count).toBase64(); }

QByteArray schemaOf(const QByteArray &title)
{
    for (const Kind &kind : kKinds) {
        if (title == kind.title) {
            return kind.schema;
        }
    }
    return QByteArray();
}

// What is wrong in every kind: the root's attributes, and elements beside the entries.
void addWrongRoots()
{
    for (const Kind &kind : kKinds) {
        wrong(kind.title, "no docInfo", " docInfo=\"1.0\"", "");
        wrong(kind.title, "another docInfo", "docInfo=\"1.0\"", "docInfo=\"1.1\"");
        wrong(kind.title, "a second root attribute", " docInfo=", " id=\"000\" docInfo=");
        wrong(kind.title, "a foreign element", " docInfo=\"1.0\">", " docInfo=\"1.0\"><foreign/>");
        wrong(kind.title, "text in the root", " docInfo=\"1.0\">", " docInfo=\"1.0\">text");
    }
}

void addWrongCommonPreferences()
{
    const char *const title = "repostry.xml";
    wrong(title, "an unknown word", "accept<", "maybe<");
    wrong(title, "a word with a blank", ">accept<", "> accept<");
    wrong(title, "an empty switch", "<enableCache>true</enableCache>", "<enableCache/>");
    wrong(title, "a missing switch", "<enableCache>true</enableCache>", "");
    wrong(title, "a switch twice", "<enableHTTP11>",
          "<enableProxy>true</enableProxy><enableHTTP11>");
    wrong(title, "an unknown timing", "notDelete", "never");
    wrong(title, "no keyboard", "<priority>soft</priority>", "");
    wrong(title, "a host of 254 characters", "<hostName/>", element("hostName", letters(254)));
    wrong(title, "a port of 6 characters", "<portHTTP>8080", "<portHTTP>808080");
    wrong(title, "domains of 254 characters", "<unusedDomain/>",
          element("unusedDomain", letters(254)));
    wrong(title, "an account of 81 bytes", "<proxyUserName/>",
          element("proxyUserName", base64OfBytes(81)));
    wrong(title, "a password that is no Base64", "<proxyUserPass/>",
          element("proxyUserPass", "secret!"));
    wrong(title, "no stamp", " version=\"2.0\"", "");
    wrong(title, "another stamp", "version=\"2.0\"", "version=\"1.0\"");
    wrong(title, "an id", "<cookie>", "<cookie id=\"000\">");
}

void addWrongUserPreferences()
{
    const char *const title = "repostry_private.xml";
    wrong(title, "a home page of 257 characters", "about:blank", letters(257));
    wrong(title, "a last page of 257 characters", "<lastPageURL>about:blank",
          "<lastPageURL>" + letters(257));
    wrong(title, "an unknown start", ">homepage<", ">blank<");
    wrong(title, "a zoom that is too large", "1.0</Zoom>", "1.6</Zoom>");
    wrong(title, "a zoom of one digit", "1.0</Zoom>", "1</Zoom>");
    wrong(title, "a zoom in another case", "<Zoom>1.0</Zoom>", "<zoom>1.0</zoom>");
    wrong(title, "an empty timing", "<cookieDeleteTiming>notDelete</cookieDeleteTiming>",
          "<cookieDeleteTiming/>");
    wrong(title, "an unknown timing", "<authInfoDeleteTiming>notDelete",
          "<authInfoDeleteTiming>always");
    wrong(title, "a font of 257 characters", "<fontName/>", element("fontName", letters(257)));
    wrong(title, "no font", "<fontName/>", "");
}

void addWrongBookmarks()
{
    const char *const title = "bookmark.xml and thumbnail/";
    wrong(title, "an id of two digits", "id=\"000\"", "id=\"00\"");
    wrong(title, "an id of letters", "id=\"000\"", "id=\"abc\"");
    wrong(title, "an entry without id before others", " id=\"000\"", "");
    wrong(title, "a URL of 257 characters", "http://www.example.com/maps?from=a&amp;to=b",
          letters(257));
    wrong(title, "a title of 101 characters", "地図", letters(101));
    wrong(title, "a whole thumbnail path", "000002.PNG", "thumbnail/000002.PNG");
    wrong(title, "a thumbnail with seven digits", "000002.PNG", "1000002.PNG");
    wrong(title, "no thumbnail", "<thumbnail>000002.PNG</thumbnail>", "");
    wrong(title, "two titles", "<title>", "<title>a</title><title>");
    wrong(title, "an entry of another name", "<bookmark id=\"000\">",
          "<pageInfo id=\"000\"/><bookmark id=\"000\">");
}

void addWrongThumbnails()
{
    const char *const title = "Packed thumbnails";
    wrong(title, "no file name", " src=\"000002.PNG\"", "");
    wrong(title, "a name that leads out", "src=\"", "src=\"../");
    wrong(title, "a name of no PNG file", "000002.PNG", "000002.JPG");
    wrong(title, "text that is no Base64", "iVBOR", "%VBOR");
    wrong(title, "cut Base64", "iVBOR", "VBOR");
    wrong(title, "an element in an image", "<![CDATA[", "<data/><![CDATA[");
    wrong(title, "an id", " src=", " id=\"000\" src=");
}

void addWrongVisits()
{
    const char *const title = "visit.xml";
    wrong(title, "an id of four digits", "id=\"000\"", "id=\"0000\"");
    wrong(title, "a month 13", "2026/03/01", "2026/13/01");
    wrong(title, "a day 32", "2026/03/01", "2026/03/32");
    wrong(title, "an hour 24", "09:05", "24:05");
    wrong(title, "a time with seconds", "09:05", "09:05:00");
    wrong(title, "a date with dashes", "2026/03/01", "2026-03-01");
    wrong(title, "an hour of one digit", "09:05", "9:05");
    wrong(title, "no title", "<title>News</title>", "");
    wrong(title, "an element in a title", "News", "<b>News</b>");
}

void addWrongCookies()
{
    const char *const title = "Cookie XML";
    wrong(title, "a negative id", "id=\"000\"", "id=\"-01\"");
    wrong(title, "another word for secure", "true", "yes");
    wrong(title, "a word with a blank", ">true<", "> true<");
    wrong(title, "an empty secure", "<secure>true</secure>", "<secure/>");
    wrong(title, "an expiry without seconds", "07:28:00", "07:28");
    wrong(title, "an expiry with a zone", "07:28:00", "07:28:00Z");
    wrong(title, "no contents", "<contents><![CDATA[abc123]]></contents>", "");
    wrong(title, "a field too many", "<expires/>", "<expires/><httpOnly>true</httpOnly>");
}

void addWrongCredentials()
{
    const char *const title = "authinfo.xml";
    wrong(title, "an id of four digits", "id=\"000\"", "id=\"1000\"");
    wrong(title, "a host of 257 characters", "archive.example.com", letters(257));
    wrong(title, "a port of 6 characters", "8080", "808080");
    wrong(title, "an unknown scheme", "digest", "negotiate");
    wrong(title, "a scheme in small letters", "digest", "ntlm");
    wrong(title, "a user of 273 bytes", "aGFuYWtv", base64OfBytes(273));
    wrong(title, "a password that is no Base64", "c2FtcGxl", "sample!");
    wrong(title, "no password", "<passwd><![CDATA[c2FtcGxl]]></passwd>", "");
}

void addWrongFonts()
{
    const char *const title = "fontlist.xml";
    wrong(title, "an id without digits", "id=\"000\"", "id=\"\"");
    wrong(title, "an id with a blank", "id=\"000\"", "id=\"00 \"");
    wrong(title, "a second attribute", " id=\"000\"", " id=\"000\" size=\"12\"");
    wrong(title, "a name of 257 characters", "DejaVu Sans", letters(257));
    wrong(title, "an element in a name", "DejaVu Sans", "<b>DejaVu</b>");
    wrong(title, "an entry of another name", "<font id=\"000\">DejaVu Sans</font>",
          "<fonts id=\"000\">DejaVu Sans</fonts>");
}
} // namespace

class tst_Schemas : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void page_linksSchema_data() { addKinds(); }
    void page_linksSchema();
    void folder_holdsNoOther();
    void schema_acceptsSample_data() { addKinds(); }
    void schema_acceptsSample();
    void schema_acceptsEmptyStore_data() { addKinds(); }
    void schema_acceptsEmptyStore();
    void schema_acceptsFullStore_data() { addKinds(); }
    void schema_acceptsFullStore();
    void schema_acceptsCompletedPreferences_data();
    void schema_acceptsCompletedPreferences();
    void schema_refusesOtherStores_data() { addKinds(); }
    void schema_refusesOtherStores();
    void schema_refuses_data();
    void schema_refuses();
    void savedDocuments_noticeWhatDoesNotConform();
    void savedDocuments_passOverForeignOnes();
};

void tst_Schemas::page_linksSchema()
{
    QFETCH(QByteArray, title);
    QFETCH(QByteArray, schema);
    const QByteArray link = "[schema/" + schema + "](schema/" + schema + ")";
    QVERIFY2(section(title).contains(link), link.constData());
}

void tst_Schemas::folder_holdsNoOther()
{
    const QStringList files = QDir(utf8(SCHEMA_FOLDER)).entryList(QDir::Files);
    QCOMPARE(int(files.size()), int(sizeof kKinds / sizeof kKinds[0]));
}

void tst_Schemas::schema_acceptsSample()
{
    QFETCH(QByteArray, title);
    QFETCH(QByteArray, schema);
    QCOMPARE(judge(schema, sample(title)), kConforms);
}

// The sample without what stands in its root.
void tst_Schemas::schema_acceptsEmptyStore()
{
    QFETCH(QByteArray, title);
    QFETCH(QByteArray, schema);
    const QByteArray page = sample(title);
    const int end = int(page.indexOf('>', page.indexOf("docInfo")));
    const bool isList = !schema.startsWith("repostry");
    QCOMPARE(judge(schema, page.left(end) + "/>\n"), isList ? kConforms : kRefused);
}

void tst_Schemas::schema_acceptsFullStore()
{
    QFETCH(QByteArray, schema);
    QFETCH(int, row);
    const TestDirectory directory;
    const int before = conformingDocuments();

    kKinds[row].save(directory.path());

    const QByteArray document = readFile(directory.file(kKinds[row].fileName));
    QVERIFY(document.size() > 300);
    QCOMPARE(judge(schema, document), kConforms);
    QCOMPARE(conformingDocuments(), before + 1);
}

void tst_Schemas::schema_acceptsCompletedPreferences_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::addColumn<QByteArray>("content");
    const QByteArray common = "repostry_common";
    const QByteArray user = "repostry";
    QTest::newRow("one switch") << common
                                << QByteArray("<proxy><enableProxy>true</enableProxy></proxy>");
    QTest::newRow("empty groups") << common << QByteArray("<security/><cache/>");
    QTest::newRow("security without stamp")
        << common << QByteArray("<security><enableSSL30>true</enableSSL30></security>");
    QTest::newRow("another root") << QByteArray("other") << QByteArray();
    QTest::newRow("one page") << user << QByteArray("<pageInfo><Zoom>0.5</Zoom></pageInfo>");
    QTest::newRow("old timing")
        << user << QByteArray("<cookie><cookieDeleteTiming>timeout</cookieDeleteTiming></cookie>");
}

void tst_Schemas::schema_acceptsCompletedPreferences()
{
    QFETCH(QByteArray, root);
    QFETCH(QByteArray, content);
    TestDirectory directory;
    const QByteArray file = root == "repostry" ? "repostry_private.xml" : "repostry.xml";
    writeFile(directory.file(file.constData()),
              "<" + root + " docInfo=\"1.0\">" + content + "</" + root + ">");
    VLMC_BrowserUserSetting user;
    user.loadSetting(directory.pathPointer());
    user.saveSetting(directory.pathPointer());
    VLMC_BrowserCommonSetting common;
    common.loadSetting(directory.pathPointer());
    common.saveSetting(directory.pathPointer());

    QCOMPARE(judge("repostry.rng", readFile(directory.file("repostry.xml"))), kConforms);
    QCOMPARE(judge("repostry_private.rng", readFile(directory.file("repostry_private.xml"))),
             kConforms);
}

void tst_Schemas::schema_refusesOtherStores()
{
    QFETCH(QByteArray, schema);
    for (const Kind &kind : kKinds) {
        if (schema != kind.schema) {
            QCOMPARE(judge(schema, sample(kind.title)), kRefused);
        }
    }
}

void tst_Schemas::schema_refuses_data()
{
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    addWrongRoots();
    addWrongCommonPreferences();
    addWrongUserPreferences();
    addWrongBookmarks();
    addWrongThumbnails();
    addWrongVisits();
    addWrongCookies();
    addWrongCredentials();
    addWrongFonts();
}

void tst_Schemas::schema_refuses()
{
    QFETCH(QByteArray, title);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QByteArray document = sample(title);
    const int place = int(document.indexOf(before));
    QVERIFY2(place >= 0, "the sample does not hold the place");
    document.replace(place, int(before.size()), after);
    QCOMPARE(judge(schemaOf(title), document), kRefused);
}

void tst_Schemas::savedDocuments_noticeWhatDoesNotConform()
{
    const TestDirectory directory;
    const ForeignDocuments overTheLimit;
    const int before = mutedDocuments();
    VLMC_FontListSetting fonts;
    fonts.loadFontList(directory.path());
    fonts.addFont(full(256));
    fonts.saveFontList(directory.path());
    QCOMPARE(mutedDocuments(), before);

    fonts.addFont(full(257));
    fonts.saveFontList(directory.path());
    QCOMPARE(mutedDocuments(), before + 1);
}

void tst_Schemas::savedDocuments_passOverForeignOnes()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist><foreign/></fontlist>");
    const int before = conformingDocuments() + mutedDocuments();
    VLMC_FontListSetting fonts;
    fonts.loadFontList(directory.path());
    fonts.saveFontList(directory.path());
    QCOMPARE(conformingDocuments() + mutedDocuments(), before);

    QFile::remove(directory.file("fontlist.xml"));
    fonts.loadFontList(directory.path());
    fonts.saveFontList(directory.path());
    QCOMPARE(conformingDocuments() + mutedDocuments(), before + 1);
}

QTEST_GUILESS_MAIN(tst_Schemas)
#include "tst_Schemas.moc"
