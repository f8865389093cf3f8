// The samples of docs/file-formats.md are what the stores write.

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

#include <QtCore/QDir>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QImage>

#include <ctime>

namespace
{
const int kMax = 20;

// Has the store load its file from one folder and save it to another.
typedef void (*Carry)(QString from, QString to);

template <typename Store>
void carryPreferences(QString from, QString to)
{
    Store store;
    store.loadSetting(&from);
    store.saveSetting(&to);
}

void carryBookmarks(QString from, QString to)
{
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    store.loadBookmark(&from, kMax, lastNumber);
    store.saveBookmark(&to, kMax);
}

void carryHistory(QString from, QString to)
{
    VLMC_HistorySetting store;
    store.loadHistory(&from, kMax);
    store.saveHistory(&to, kMax);
}

void carryCredentials(QString from, QString to)
{
    VLMC_AuthSetting store;
    store.loadAuthInfo(&from, kMax);
    store.saveAuthInfo(&to, kMax);
}

void carryFonts(QString from, QString to)
{
    VLMC_FontListSetting store;
    store.loadFontList(from);
    store.saveFontList(to);
}

void carryCookieIni(QString from, QString to)
{
    VLMC_CookieSetting store;
    store.saveCookieInfo(store.loadCookieInfo(&from, kMax), &to, kMax);
}

// By way of the pictures.
void carryThumbnails(QString from, QString to)
{
    QByteArray source = (from + utf8("thumbnails.xml")).toLocal8Bit();
    QByteArray target = (to + utf8("thumbnails.xml")).toLocal8Bit();
    QByteArray folder = to.toLocal8Bit();
    VLMC_ThumbnailConverter converter;
    converter.convertThumbnailXMLToPng(source.data(), folder.data());
    converter.convertThumbnailPngToXML(folder.data(), target.data());
}

// By way of cookie.ini.
void carryCookies(QString from, QString to)
{
    QByteArray source = (from + utf8("cookies.xml")).toLocal8Bit();
    QByteArray target = (to + utf8("cookies.xml")).toLocal8Bit();
    QByteArray folder = to.toLocal8Bit();
    VLMC_CookieSetting store;
    store.convertCookieXMLToIni(source.data(), folder.data());
    store.convertCookieIniToXML(folder.data(), target.data());
}

struct Format {
    const char *title;
    const char *fileName;
    Carry carry;
};

const Format kFormats[] = {
    {"repostry.xml", "repostry.xml", carryPreferences<VLMC_BrowserCommonSetting>},
    {"repostry_private.xml", "repostry_private.xml", carryPreferences<VLMC_BrowserUserSetting>},
    {"bookmark.xml and thumbnail/", "bookmark.xml", carryBookmarks},
    {"Packed thumbnails", "thumbnails.xml", carryThumbnails},
    {"visit.xml", "visit.xml", carryHistory},
    {"Cookie XML", "cookies.xml", carryCookies},
    {"cookie.ini", "cookie.ini", carryCookieIni},
    {"authinfo.xml", "authinfo.xml", carryCredentials},
    {"fontlist.xml", "fontlist.xml", carryFonts},
};
} // namespace

class tst_FileFormats : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { runDeferredDeletes(); }

    void page_hasOneSamplePerSection();
    void sample_isWhatItsStoreWrites_data();
    void sample_isWhatItsStoreWrites();
    void sample_namesStandInItsTable_data() { sample_isWhatItsStoreWrites_data(); }
    void sample_namesStandInItsTable();
    void preferenceSamples_areNewFiles();
    void packedSample_holdsPictures();
    void cookieSamples_holdTheSameCookies();
};

void tst_FileFormats::init()
{
    qputenv("TZ", "UTC0");
    tzset();
    takeLog();
}

void tst_FileFormats::page_hasOneSamplePerSection()
{
    const QByteArray page = formatsPage();
    const int formats = int(sizeof kFormats / sizeof kFormats[0]);
    QCOMPARE(int(page.count("\n## ")), formats);
    QCOMPARE(int(page.count("\n```")), 2 * formats);
}

void tst_FileFormats::sample_isWhatItsStoreWrites_data()
{
    QTest::addColumn<int>("row");
    int row = 0;
    for (const Format &format : kFormats) {
        QTest::newRow(format.title) << row;
        ++row;
    }
}

void tst_FileFormats::sample_isWhatItsStoreWrites()
{
    QFETCH(int, row);
    const Format &format = kFormats[row];
    const QByteArray content = sample(format.title);
    QVERIFY2(content.size() > 50, "no sample");
    TestDirectory from;
    TestDirectory to;
    writeFile(from.file(format.fileName), content);

    format.carry(from.path(), to.path());

    COMPARE_BYTES(readFile(to.file(format.fileName)), content);
}

void tst_FileFormats::sample_namesStandInItsTable()
{
    QFETCH(int, row);
    const Format &format = kFormats[row];
    if (!utf8(format.fileName).endsWith(utf8(".xml"))) {
        return;
    }
    const QByteArray page = section(format.title);
    const QByteArray table = page.left(page.indexOf("\n```"));
    QXmlStreamReader reader(sample(format.title));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QByteArray name = '`' + reader.name().toString().toUtf8() + '`';
        QVERIFY2(table.contains("| " + name) || table.contains("/ " + name), name.constData());
        for (const QXmlStreamAttribute &attribute : reader.attributes()) {
            const QByteArray named = '`' + attribute.name().toString().toUtf8() + '`';
            QVERIFY2(table.contains("| " + named), named.constData());
        }
    }
    QVERIFY(!reader.hasError());
}

void tst_FileFormats::preferenceSamples_areNewFiles()
{
    TestDirectory empty;
    TestDirectory to;
    carryPreferences<VLMC_BrowserCommonSetting>(empty.path(), to.path());
    carryPreferences<VLMC_BrowserUserSetting>(empty.path(), to.path());

    COMPARE_BYTES(readFile(to.file("repostry.xml")), sample("repostry.xml"));
    COMPARE_BYTES(readFile(to.file("repostry_private.xml")), sample("repostry_private.xml"));
}

void tst_FileFormats::packedSample_holdsPictures()
{
    TestDirectory from;
    TestDirectory to;
    writeFile(from.file("thumbnails.xml"), sample("Packed thumbnails"));
    carryThumbnails(from.path(), to.path());
    QCOMPARE(QImage(to.file("000001.PNG")).size(), QSize(1, 1));
    QCOMPARE(QImage(to.file("000002.PNG")).size(), QSize(1, 1));
}

void tst_FileFormats::cookieSamples_holdTheSameCookies()
{
    TestDirectory from;
    TestDirectory to;
    writeFile(from.file("cookies.xml"), sample("Cookie XML"));
    carryCookies(from.path(), to.path());
    COMPARE_BYTES(readFile(to.file("cookie.ini")), sample("cookie.ini"));
}

QTEST_GUILESS_MAIN(tst_FileFormats)
#include "tst_FileFormats.moc"
