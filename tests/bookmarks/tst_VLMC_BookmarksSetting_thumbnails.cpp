#include "bookmarks/VLMC_BookmarksSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QDir>
#include <QtGui/QImage>

#include <unistd.h>

#include <climits>
#include <sys/stat.h>

namespace
{
QImage painted(uint colour)
{
    QImage image(12, 9, QImage::Format_RGB32);
    image.fill(colour);
    image.setPixel(3, 4, 0xff102030);
    return image;
}

QByteArray bookmarkWith(const char *path)
{
    return QByteArray("<bookmark><thumbnail>") + path + "</thumbnail></bookmark>";
}

QByteArray thumbnailName(int number)
{
    return QByteArray::number(number).rightJustified(6, '0') + ".PNG";
}

// Their thumbnails are numbered from 1 on.
QByteArray bookmarksUpTo(int count)
{
    QByteArray entries;
    for (int number = 1; number <= count; ++number) {
        entries += bookmarkWith(thumbnailName(number).constData());
    }
    return entries;
}

// A list loaded from these entries; returns the last number.
int loadList(VLMC_BookmarksSetting &bookmarks, TestDirectory &directory, const QByteArray &entries)
{
    writeFile(directory.file("bookmark.xml"), "<bookmarks>" + entries + "</bookmarks>");
    int lastNumber = -5;
    bookmarks.loadBookmark(directory.pathPointer(), 1, lastNumber);
    return lastNumber;
}

QString pathOf(VLMC_BookmarksSetting &bookmarks, int id)
{
    QString path = utf8("none");
    bookmarks.getBookmarkThumbnailFilePath(id, &path);
    return path;
}

QString bracketed(QString &path, QString &dir) { return dir + utf8("<") + path + utf8(">"); }

VLMC_BookmarksSetting *g_shrinking = nullptr;

// Takes the second bookmark of g_shrinking out before the first one gets its path.
QString withoutSecond(QString &path, QString &dir)
{
    if (g_shrinking) {
        g_shrinking->deleteBookmark(1);
        g_shrinking = nullptr;
    }
    return bracketed(path, dir);
}

VLMC_BookmarksSetting *g_growing = nullptr;
char g_place = 0;
QStringList g_converted;

// Each conversion adds a bookmark to g_growing, up to more than a test has patience for.
QString withOneMore(QString &path, QString &dir)
{
    g_converted.append(path);
    VLMS_Bookmark added;
    added.thumbnailPath = utf8("added");
    if (g_converted.size() < 20) {
        g_growing->setBookmark(&added, g_place);
    }
    return bracketed(path, dir);
}

QString letters(int count) { return QString(count, QLatin1Char('x')); }
} // namespace

class tst_VLMC_BookmarksSetting_thumbnails : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void setThumbnail_savesUnderTheNextNumber();
    void setThumbnail_writesWhatThisQtMakesOfAnImage_data();
    void setThumbnail_writesWhatThisQtMakesOfAnImage();
    void setThumbnail_namesNumbers_data();
    void setThumbnail_namesNumbers();
    void setThumbnail_skipsANumberWhenSavingFails();
    void setThumbnail_refusesNull();
    void setThumbnail_followsNoLink();
    void getThumbnail_limitsPixels_data();
    void getThumbnail_limitsPixels();
    void getThumbnail_leavesTheImageWhenLoadingFails_data();
    void getThumbnail_leavesTheImageWhenLoadingFails();
    void thumbnails_doNotWaitForAFifo();
    void deleteThumbnail_removesTheFile();
    void getLastNumber_readsNames_data();
    void getLastNumber_readsNames();
    void getLastNumber_readsWholePathsAtLoad_data();
    void getLastNumber_readsWholePathsAtLoad();
    void getLastNumber_isZeroBeforeLoad();
    void getThumbNode_searchesFromIndex();
    void thumbFilePath_limitsReadingOnly();
    void bookmarkThumbnailFilePath_limits_data();
    void bookmarkThumbnailFilePath_limits();
    void changeThumbFilePath_convertsEachOnce();
    void changeThumbFilePath_convertsEachOfMany();
    void changeThumbFilePath_followsAListThatConversionsChange();
    void changeThumbFilePath_endsWhereTheListEndedBefore_data();
    void changeThumbFilePath_endsWhereTheListEndedBefore();
    void changeThumbFilePath_stopsWithoutThumbnail();
    void changeThumbFilePath_readsOverLongPathAsEmpty();
    void changeThumbFilePath_doesNothingWithoutConversionOrEntries();
    void addAndRemoveThumbnailFilePath_rewritePaths();
    void saveBookmark_cutsSevenDigitNames();
    void saveBookmark_leavesPathsBehindABookmarkWithoutThumbnail();
};

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_savesUnderTheNextNumber()
{
    TestDirectory directory;
    QVERIFY(QDir().mkdir(directory.file("thumbnail")));
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(0xffaa0055);
    QString path = directory.file("thumbnail/");
    int number = 41;

    QVERIFY(bookmarks.setThumbnail(&image, &path, number));

    QCOMPARE(number, 42);
    QCOMPARE(path, directory.file("thumbnail/000042.PNG"));
    QVERIFY(readFile(path).startsWith("\x89PNG\r\n"));
    QImage read;
    QVERIFY(bookmarks.getThumbnail(&read, &path));
    QCOMPARE(read.convertToFormat(QImage::Format_RGB32), image);
    // The same number again replaces the file.
    QImage other = painted(0xff00ff00);
    QString again = directory.file("thumbnail/");
    number = 41;
    QVERIFY(bookmarks.setThumbnail(&other, &again, number));
    QVERIFY(bookmarks.getThumbnail(&read, &path));
    QCOMPARE(read.convertToFormat(QImage::Format_RGB32), other);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_writesWhatThisQtMakesOfAnImage_data()
{
    QTest::addColumn<int>("format");

    QTest::newRow("RGB32") << int(QImage::Format_RGB32);
    QTest::newRow("ARGB32") << int(QImage::Format_ARGB32);
    QTest::newRow("mono") << int(QImage::Format_Mono);
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_writesWhatThisQtMakesOfAnImage()
{
    QFETCH(int, format);
    const TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(0xffaa0055).convertToFormat(QImage::Format(format));
    QString path = directory.path();
    int number = 0;

    QVERIFY(bookmarks.setThumbnail(&image, &path, number));

    const QByteArray png = readFile(path);
    // The chunk with the number of significant bits, which only Qt 4 writes.
    QCOMPARE(bool(png.contains("sBIT")), QT_VERSION < 0x050000);
    QVERIFY(image.save(directory.file("direct.png"), "PNG"));
    QCOMPARE(png, readFile(directory.file("direct.png")));
    QImage read;
    QVERIFY(bookmarks.getThumbnail(&read, &path));
    QCOMPARE(read.convertToFormat(image.format()), image);
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_namesNumbers_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("next");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("first") << 0 << 1 << QByteArray("000001.PNG");
    QTest::newRow("six digits") << 999998 << 999999 << QByteArray("999999.PNG");
    QTest::newRow("seven digits") << 999999 << 1000000 << QByteArray("1000000.PNG");
    QTest::newRow("0") << -1 << 0 << QByteArray("000000.PNG");
    QTest::newRow("negative") << -2 << -1 << QByteArray("-00001.PNG");
    QTest::newRow("behind the highest") << INT_MAX << INT_MIN << QByteArray("-2147483648.PNG");
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_namesNumbers()
{
    QFETCH(int, number);
    QFETCH(int, next);
    QFETCH(QByteArray, name);
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(1);
    QString path = directory.path();
    QVERIFY(bookmarks.setThumbnail(&image, &path, number));
    QCOMPARE(number, next);
    QCOMPARE(path, directory.path() + QString::fromLatin1(name));
    QVERIFY(exists(path));
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_skipsANumberWhenSavingFails()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(1);
    QString path = directory.file("missing/");
    int number = 7;
    QVERIFY(!bookmarks.setThumbnail(&image, &path, number));
    QCOMPARE(number, 8);
    QCOMPARE(path, directory.file("missing/000008.PNG"));

    QImage none;
    path = directory.path();
    QVERIFY(!bookmarks.setThumbnail(&none, &path, number));
    QCOMPARE(number, 9);
    QVERIFY(!exists(path));
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_refusesNull()
{
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(1);
    QString path = utf8("p");
    int number = 7;
    QVERIFY(!bookmarks.setThumbnail(nullptr, &path, number));
    QVERIFY(!bookmarks.setThumbnail(&image, nullptr, number));
    QVERIFY(!bookmarks.getThumbnail(nullptr, &path));
    QVERIFY(!bookmarks.getThumbnail(&image, nullptr));
    QVERIFY(!bookmarks.deleteThumbnail(nullptr));
    QCOMPARE(number, 7);
    QCOMPARE(path, utf8("p"));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BookmarksSetting_thumbnails::setThumbnail_followsNoLink()
{
    TestDirectory directory;
    writeFile(directory.file("victim"), "untouched");
    QCOMPARE(symlink("victim", directory.localFile("000001.PNG")), 0);
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(1);
    QString path = directory.path();
    int number = 0;
    QVERIFY(!bookmarks.setThumbnail(&image, &path, number));
    QCOMPARE(number, 1);
    QCOMPARE(path, directory.file("000001.PNG"));
    COMPARE_BYTES(readFile(directory.file("victim")), "untouched");
}

void tst_VLMC_BookmarksSetting_thumbnails::getThumbnail_limitsPixels_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("loaded");
    QTest::newRow("32 million") << 4096 << true;
    // Qt 6 itself refuses what takes more than 128 MiB at 32 bits a pixel.
    QTest::newRow("64 million") << 8192 << (QT_VERSION < 0x060000);
    QTest::newRow("a column more") << 8193 << false;
}

// One bit each, so that what is accepted takes 8 MiB.
void tst_VLMC_BookmarksSetting_thumbnails::getThumbnail_limitsPixels()
{
    QFETCH(int, width);
    QFETCH(bool, loaded);
    const TestDirectory directory;
    QImage large(width, 8192, QImage::Format_Mono);
    large.fill(0);
    QString path = directory.file("large.PNG");
    QVERIFY(large.save(path, "PNG"));
    VLMC_BookmarksSetting bookmarks;
    QImage image = painted(1);
    const QImage before = image;
    QCOMPARE(bookmarks.getThumbnail(&image, &path), loaded);
    QCOMPARE(image == before, !loaded);
    QCOMPARE(image.width(), loaded ? width : before.width());
}

void tst_VLMC_BookmarksSetting_thumbnails::getThumbnail_leavesTheImageWhenLoadingFails_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("bytes");
    QTest::newRow("missing") << QByteArray() << 0;
    QTest::newRow("empty") << QByteArray("PNG") << 0;
    QTest::newRow("truncated") << QByteArray("PNG") << 40;
    QTest::newRow("another format") << QByteArray("BMP") << 1000000;
}

void tst_VLMC_BookmarksSetting_thumbnails::getThumbnail_leavesTheImageWhenLoadingFails()
{
    QFETCH(QByteArray, format);
    QFETCH(int, bytes);
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QString path = directory.file("a.PNG");
    if (!format.isEmpty()) {
        QVERIFY(painted(5).save(path, format.constData()));
        writeFile(path, readFile(path).left(bytes));
    }
    QImage image = painted(0xff123456);
    const QImage before = image;
    QVERIFY(!bookmarks.getThumbnail(&image, &path));
    QCOMPARE(image, before);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BookmarksSetting_thumbnails::thumbnails_doNotWaitForAFifo()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QCOMPARE(mkfifo(directory.localFile("000001.PNG"), 0600), 0);
    QImage image = painted(1);
    QString path = directory.file("000001.PNG");
    QVERIFY(!bookmarks.getThumbnail(&image, &path));
    QString folder = directory.path();
    int number = 0;
    QVERIFY(!bookmarks.setThumbnail(&image, &folder, number));
    QCOMPARE(number, 1);
    QVERIFY(QDir().mkdir(directory.file("000002.PNG")));
    folder = directory.path();
    QVERIFY(!bookmarks.setThumbnail(&image, &folder, number));
    QVERIFY(!bookmarks.getThumbnail(&image, &folder));
}

void tst_VLMC_BookmarksSetting_thumbnails::deleteThumbnail_removesTheFile()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QString path = directory.file("000001.PNG");
    writeFile(path, "x");
    QVERIFY(bookmarks.deleteThumbnail(&path));
    QVERIFY(!exists(path));
    QVERIFY(!bookmarks.deleteThumbnail(&path));
}

void tst_VLMC_BookmarksSetting_thumbnails::getLastNumber_readsNames_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<int>("last");
    QTest::newRow("none") << QByteArray() << 0;
    QTest::newRow("3, 17, 5") << bookmarkWith("000003.PNG") + bookmarkWith("000017.PNG")
                                     + bookmarkWith("000005.PNG")
                              << 17;
    QTest::newRow("empty") << bookmarkWith("") << 0;
    QTest::newRow("not numeric") << bookmarkWith("abcdef.PNG") << 0;
    QTest::newRow("highest of six digits") << bookmarkWith("999999.PNG") << 999999;
    QTest::newRow("seven digits lose one") << bookmarkWith("1000023.PNG") << 23;
    QTest::newRow("negative") << bookmarkWith("-00001.PNG") << 0;
    QTest::newRow("plus sign") << bookmarkWith("+00012.PNG") << 12;
    QTest::newRow("blanks") << bookmarkWith("  0012.PNG") << 12;
    QTest::newRow("longer than a path may be")
        << bookmarkWith(QByteArray(247, 'x') + "000012.PNG") + bookmarkWith("000003.PNG") << 3;
    QTest::newRow("any suffix") << bookmarkWith("000012.xyz") << 12;
    QTest::newRow("short name meets the folder's") << bookmarkWith("5.PNG") << 0;
    QTest::newRow("foreign elements between")
        << "<x/>" + bookmarkWith("000003.PNG") + "<x/><x/>" + bookmarkWith("000009.PNG") + "<x/>"
        << 9;
    const QByteArray many = bookmarksUpTo(100);
    QTest::newRow("many") << many << 100;
    QTest::newRow("many, and stops") << many + "<bookmark/>" + bookmarkWith("000200.PNG") << 100;
    QTest::newRow("stops without thumbnail")
        << bookmarkWith("000003.PNG") + "<bookmark/>" + bookmarkWith("000017.PNG") << 3;
}

void tst_VLMC_BookmarksSetting_thumbnails::getLastNumber_readsNames()
{
    QFETCH(QByteArray, entries);
    QFETCH(int, last);
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QCOMPARE(loadList(bookmarks, directory, entries), last);
    takeLog();
    QCOMPARE(bookmarks.getLastNumber(), last);
    COMPARE_BYTES(loggedText(), "3 [VLMC_BookmarksSetting::getLastNumber] last number:"
                                    + QByteArray::number(last) + "\n");
}

void tst_VLMC_BookmarksSetting_thumbnails::getLastNumber_readsWholePathsAtLoad_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("last");
    QTest::newRow("at the limit of a path") << 256 << 17;
    QTest::newRow("over it") << 257 << 0;
}

void tst_VLMC_BookmarksSetting_thumbnails::getLastNumber_readsWholePathsAtLoad()
{
    QFETCH(int, bytes);
    QFETCH(int, last);
    TestDirectory directory;
    const int added = int(qstrlen("/thumbnail/000017.PNG"));
    const QString inner = letters(bytes - added - int(directory.path().toUtf8().size()));
    QVERIFY(QDir(directory.path()).mkdir(inner));
    QString path = directory.path() + inner + utf8("/");
    writeFile(path + utf8("bookmark.xml"), "<bookmarks>" + bookmarkWith("000017.PNG")
                                               + bookmarkWith("000003.PNG") + "</bookmarks>");
    VLMC_BookmarksSetting bookmarks;
    int lastNumber = -1;

    bookmarks.loadBookmark(&path, 999, lastNumber);

    QCOMPARE(lastNumber, last);
    const QString whole = bookmarks.getBookmarkChildNode(0, 2)->getText();
    QCOMPARE(whole, path + utf8("thumbnail/000017.PNG"));
    QCOMPARE(int(whole.toUtf8().size()), bytes);
}

void tst_VLMC_BookmarksSetting_thumbnails::getLastNumber_isZeroBeforeLoad()
{
    VLMC_BookmarksSetting bookmarks;
    QCOMPARE(bookmarks.getLastNumber(), 0);
    COMPARE_BYTES(loggedText(), "3 [VLMC_BookmarksSetting::getLastNumber] last number:0\n");
    // A bare short name is read as it stands.
    bookmarks.createXMLRootNode();
    VLMS_Bookmark bookmark;
    bookmark.thumbnailPath = utf8("5.PNG");
    QVERIFY(bookmarks.setBookmark(&bookmark, 0));
    QCOMPARE(bookmarks.getLastNumber(), 5);
    QString overLong = letters(247) + utf8("000008.PNG");
    bookmarks.getBookmarkChildNode(0, 2)->setText(overLong);
    QCOMPARE(bookmarks.getLastNumber(), 0);
    overLong.remove(0, 1);
    bookmarks.getBookmarkChildNode(0, 2)->setText(overLong);
    QCOMPARE(bookmarks.getLastNumber(), 8);
}

void tst_VLMC_BookmarksSetting_thumbnails::getThumbNode_searchesFromIndex()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    int index = 4;
    QVERIFY(!bookmarks.getThumbNode(index));
    QCOMPARE(index, 4);
    loadList(bookmarks, directory,
             "<x/>" + bookmarkWith("1") + "<x/>" + bookmarkWith("2") + "<bookmark/><x/>");
    index = 0;
    VLMC_XMLNode *const first = bookmarks.getThumbNode(index);
    QVERIFY(first);
    QCOMPARE(index, 1);
    QCOMPARE(first, bookmarks.getBookmarkChildNode(1, 2));
    QCOMPARE(bookmarks.getThumbNode(index), first);
    index = 2;
    QCOMPARE(bookmarks.getThumbNode(index), bookmarks.getBookmarkChildNode(3, 2));
    QCOMPARE(index, 3);
    index = 4;
    QVERIFY(!bookmarks.getThumbNode(index));
    QCOMPARE(index, 4);
    index = 5;
    QVERIFY(!bookmarks.getThumbNode(index));
    index = 50;
    QVERIFY(!bookmarks.getThumbNode(index));
    index = -3;
    QCOMPARE(bookmarks.getThumbNode(index), first);
    QCOMPARE(index, 1);
}

void tst_VLMC_BookmarksSetting_thumbnails::thumbFilePath_limitsReadingOnly()
{
    VLMC_BookmarksSetting bookmarks;
    VLMC_XMLNode node(nullptr, 0);
    QString path = letters(256);
    QVERIFY(bookmarks.setThumbFilePath(&node, path));
    QCOMPARE(bookmarks.getThumbFilePath(&node), path);
    path = letters(257);
    QVERIFY(bookmarks.setThumbFilePath(&node, path));
    QCOMPARE(node.getText(), path);
    QCOMPARE(bookmarks.getThumbFilePath(&node), QString());
    QVERIFY(!bookmarks.setThumbFilePath(nullptr, path));
    QCOMPARE(bookmarks.getThumbFilePath(nullptr), QString());
}

void tst_VLMC_BookmarksSetting_thumbnails::bookmarkThumbnailFilePath_limits_data()
{
    const QString emoji = utf8("\xf0\x9f\x98\x80");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("fits");
    QTest::newRow("256 bytes") << letters(256) << true;
    QTest::newRow("257 bytes") << letters(257) << false;
    QTest::newRow("256 bytes, emoji") << emoji.repeated(64) << true;
    QTest::newRow("257 bytes, emoji") << emoji.repeated(64) + letters(1) << false;
    QTest::newRow("258 bytes, 3 a character") << QString(86, QChar(0x3042)) << false;
}

void tst_VLMC_BookmarksSetting_thumbnails::bookmarkThumbnailFilePath_limits()
{
    QFETCH(QString, path);
    QFETCH(bool, fits);
    VLMC_BookmarksSetting bookmarks;
    QString read = utf8("mine");
    QVERIFY(!bookmarks.getBookmarkThumbnailFilePath(0, &read));
    QVERIFY(!bookmarks.setBookmarkThumbnailFilePath(0, &read));
    bookmarks.createXMLRootNode();
    VLMS_Bookmark bookmark;
    bookmark.thumbnailPath = utf8("old");
    QVERIFY(bookmarks.setBookmark(&bookmark, 0));

    QCOMPARE(bookmarks.setBookmarkThumbnailFilePath(0, &path), fits);

    QVERIFY(!bookmarks.getBookmarkThumbnailFilePath(0, nullptr));
    QVERIFY(!bookmarks.setBookmarkThumbnailFilePath(0, nullptr));
    QVERIFY(!bookmarks.getBookmarkThumbnailFilePath(1, &read));
    QCOMPARE(read, utf8("mine"));
    QCOMPARE(pathOf(bookmarks, 0), fits ? path : utf8("old"));
    bookmarks.getBookmarkChildNode(0, 2)->setText(path);
    QVERIFY(bookmarks.getBookmarkThumbnailFilePath(0, &read));
    QCOMPARE(read, fits ? path : QString());
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_convertsEachOnce()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory,
             "<x/><x/>" + bookmarkWith("1") + "<x/>" + bookmarkWith("2") + "<x/>");
    bookmarks.removeThumbnailFilePath();
    QString text = utf8("1");
    bookmarks.getBookmarkChildNode(2, 2)->setText(text);
    text = utf8("2");
    bookmarks.getBookmarkChildNode(4, 2)->setText(text);
    QString dir = utf8("d");
    bookmarks.changeThumbFilePath(dir, bracketed);
    QCOMPARE(pathOf(bookmarks, 2), utf8("d<1>"));
    QCOMPARE(pathOf(bookmarks, 4), utf8("d<2>"));
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_convertsEachOfMany()
{
    const int many = 100;
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory, bookmarksUpTo(many));
    for (int id = 0; id < many; ++id) {
        QCOMPARE(pathOf(bookmarks, id),
                 directory.file("thumbnail/") + utf8(thumbnailName(id + 1).constData()));
    }
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_followsAListThatConversionsChange()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory, bookmarkWith("a") + bookmarkWith("b") + bookmarkWith("c"));
    bookmarks.removeThumbnailFilePath();
    VLMC_XMLNode *const second = bookmarks.getBookmarkChildNode(1, 2);
    const QString pathOfSecond = second->getText();
    g_shrinking = &bookmarks;
    QString dir = utf8("d");

    bookmarks.changeThumbFilePath(dir, withoutSecond);

    QCOMPARE(bookmarks.getBookmarkCnt(), 2);
    QVERIFY(pathOf(bookmarks, 0).startsWith(utf8("d<")));
    QVERIFY(pathOf(bookmarks, 1).startsWith(utf8("d<")));
    QCOMPARE(second->getText(), pathOfSecond);
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_endsWhereTheListEndedBefore_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QStringList>("converted");
    QTest::newRow("added behind") << 0 << (QStringList() << utf8("a") << utf8("b") << utf8("c"));
    // What is pushed back comes again.
    QTest::newRow("added in front")
        << 1 << (QStringList() << utf8("a") << utf8("<a>") << utf8("<<a>>"));
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_endsWhereTheListEndedBefore()
{
    QFETCH(int, place);
    QFETCH(QStringList, converted);
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory, bookmarkWith("a") + bookmarkWith("b") + bookmarkWith("c"));
    bookmarks.removeThumbnailFilePath();
    const char *const names[] = {"a", "b", "c"};
    for (int id = 0; id < 3; ++id) {
        QString name = utf8(names[id]);
        bookmarks.setBookmarkThumbnailFilePath(id, &name);
    }
    g_growing = &bookmarks;
    g_place = char(place);
    g_converted.clear();
    QString dir;

    bookmarks.changeThumbFilePath(dir, withOneMore);

    QCOMPARE(g_converted, converted);
    QCOMPARE(bookmarks.getBookmarkCnt(), 6);
    QCOMPARE(pathOf(bookmarks, place ? 0 : 5), utf8("added"));
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_stopsWithoutThumbnail()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory,
             bookmarkWith("000001.PNG") + "<bookmark/>" + bookmarkWith("000003.PNG"));
    QCOMPARE(pathOf(bookmarks, 0), directory.file("thumbnail/000001.PNG"));
    QCOMPARE(pathOf(bookmarks, 2), utf8("000003.PNG"));
}

void tst_VLMC_BookmarksSetting_thumbnails::changeThumbFilePath_readsOverLongPathAsEmpty()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory,
             bookmarkWith(QByteArray(257, 'x').constData()) + bookmarkWith(""));
    QCOMPARE(pathOf(bookmarks, 0), directory.file("thumbnail/"));
    QCOMPARE(pathOf(bookmarks, 1), directory.file("thumbnail/"));
}

void tst_VLMC_BookmarksSetting_thumbnails::
    changeThumbFilePath_doesNothingWithoutConversionOrEntries()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    QString dir = utf8("d/");
    bookmarks.changeThumbFilePath(dir, bracketed);
    bookmarks.addThumbnailFilePath(&dir);
    bookmarks.removeThumbnailFilePath();
    loadList(bookmarks, directory, bookmarkWith("000001.PNG"));
    bookmarks.changeThumbFilePath(dir, nullptr);
    bookmarks.addThumbnailFilePath(nullptr);
    QCOMPARE(pathOf(bookmarks, 0), directory.file("thumbnail/000001.PNG"));
}

void tst_VLMC_BookmarksSetting_thumbnails::addAndRemoveThumbnailFilePath_rewritePaths()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory, bookmarkWith("000001.PNG"));
    bookmarks.removeThumbnailFilePath();
    QCOMPARE(pathOf(bookmarks, 0), utf8("000001.PNG"));
    QString dir = utf8("d/");
    bookmarks.addThumbnailFilePath(&dir);
    QCOMPARE(pathOf(bookmarks, 0), utf8("d/thumbnail/000001.PNG"));
    QString path = utf8("a.PNG");
    bookmarks.setBookmarkThumbnailFilePath(0, &path);
    bookmarks.removeThumbnailFilePath();
    QCOMPARE(pathOf(bookmarks, 0), path);
}

void tst_VLMC_BookmarksSetting_thumbnails::saveBookmark_cutsSevenDigitNames()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    bookmarks.createXMLRootNode();
    VLMS_Bookmark bookmark;
    bookmark.thumbnailPath = directory.file("thumbnail/1234567.PNG");
    QVERIFY(bookmarks.setBookmark(&bookmark, 0));
    bookmarks.saveBookmark(directory.pathPointer(), 1);
    QVERIFY(readFile(directory.file("bookmark.xml")).contains("<thumbnail>234567.PNG</thumbnail>"));
    QCOMPARE(pathOf(bookmarks, 0), directory.file("thumbnail/234567.PNG"));
}

void tst_VLMC_BookmarksSetting_thumbnails::saveBookmark_leavesPathsBehindABookmarkWithoutThumbnail()
{
    TestDirectory directory;
    VLMC_BookmarksSetting bookmarks;
    loadList(bookmarks, directory, "<bookmark/>" + bookmarkWith("far/away/000003.PNG"));
    bookmarks.saveBookmark(directory.pathPointer(), 1);
    QVERIFY(readFile(directory.file("bookmark.xml")).contains(">far/away/000003.PNG<"));
    QCOMPARE(pathOf(bookmarks, 1), utf8("far/away/000003.PNG"));
}

QTEST_GUILESS_MAIN(tst_VLMC_BookmarksSetting_thumbnails)
#include "tst_VLMC_BookmarksSetting_thumbnails.moc"
