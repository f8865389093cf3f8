// Files whose sizes and inode numbers do not fit in 32 bits.

#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "tests/support/Files.h"
#include "tests/support/NarrowCalls.h"

#include <QtCore/QFileInfo>

#include <sys/stat.h>

namespace
{
const char kSaved[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<fontlist docInfo=\"1.0\">\n"
                      "    <font id=\"000\">Sans</font>\n"
                      "</fontlist>\n";

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    stat(QFile::encodeName(path).constData(), &status);
    return status;
}

void saveList(const TestDirectory &directory)
{
    VLMC_FontListSetting fonts;
    fonts.createXMLRootNode();
    fonts.addFont(utf8("Sans"));
    const NarrowCalls narrow;
    fonts.saveFontList(directory.path());
}
} // namespace

class tst_LargeFiles : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void numbersOfFiles_have64Bits();
    void load_readsTheFile();
    void save_createsTheFile();
    void save_replacesTheFile();
    void save_removesStaleFiles();
    void saveCookieInfo_createsForOwnerAlone();
};

void tst_LargeFiles::numbersOfFiles_have64Bits()
{
    const struct stat status = {};
    QCOMPARE(sizeof status.st_ino, size_t(8));
    QCOMPARE(sizeof status.st_size, size_t(8));
    QCOMPARE(sizeof status.st_mtime, size_t(8));
}

void tst_LargeFiles::load_readsTheFile()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist><font>Sans</font></fontlist>");
    VLMC_FontListSetting fonts;
    const NarrowCalls narrow;
    fonts.loadFontList(directory.path());
    QCOMPARE(fonts.getCount(), 1);
}

void tst_LargeFiles::save_createsTheFile()
{
    const TestDirectory directory;
    saveList(directory);
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), kSaved);
}

void tst_LargeFiles::save_replacesTheFile()
{
    const TestDirectory directory;
    const QString path = directory.file("fontlist.xml");
    writeFile(path, "<fontlist/>");
    QFile old(path);
    QVERIFY(old.open(QIODevice::ReadOnly));
    const ino_t before = statusOf(path).st_ino;

    saveList(directory);

    COMPARE_BYTES(readFile(path), kSaved);
    // The old one stands whole for whoever has it open.
    QVERIFY(statusOf(path).st_ino != before);
    QCOMPARE(old.readAll(), QByteArray("<fontlist/>"));
}

void tst_LargeFiles::save_removesStaleFiles()
{
    const TestDirectory directory;
    const QString stale = directory.file(".velmora-save-1-0");
    writeFile(stale, "stale");
    saveList(directory);
    QVERIFY(!exists(stale));
}

void tst_LargeFiles::saveCookieInfo_createsForOwnerAlone()
{
    TestDirectory directory;
    const mode_t old = umask(0);
    {
        const NarrowCalls narrow;
        VLMC_CookieSetting().saveCookieInfo(QList<QNetworkCookie>(), directory.pathPointer(), 20);
    }
    umask(old);
    QCOMPARE(int(statusOf(directory.file("cookie.ini")).st_mode & 07777), 0600);
}

QTEST_GUILESS_MAIN(tst_LargeFiles)
#include "tst_LargeFiles.moc"
