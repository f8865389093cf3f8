#include "tests/identical/Script.h"

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "core/VLMC_XMLNode.h"

namespace
{
const char kFile[] = "bookmark.xml";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<bookmarks docInfo=\"1.0\">\n"
                         "    <bookmark id=\"000\">\n"
                         "        <href>http://www.example.com/maps?from=a&amp;to=b</href>\n"
                         "        <title>\xE3\x81\x82</title>\n"
                         "        <thumbnail>000012.PNG</thumbnail>\n"
                         "    </bookmark>\n"
                         "    <bookmark id=\"001\">\n"
                         "        <href>http://www.example.com/</href>\n"
                         "        <title>Welcome</title>\n"
                         "        <thumbnail>000007.PNG</thumbnail>\n"
                         "    </bookmark>\n"
                         "</bookmarks>\n";
const int kKept = 10;

// Names of thumbnails, of which the number counts that stands before the last four of ten
// characters.
const char *const kNames[] = {
    "",
    "1",
    "1.PNG",
    "000001.PNG",
    "0000001.PNG",
    "12345678901.PNG",
    "999999.PNG",
    "1000000.PNG",
    "-00005.PNG",
    "+00005.PNG",
    " 00005.PNG",
    "00 005.PNG",
    "0x0005.PNG",
    "00000a.PNG",
    "other/000009.PNG",
    "000009.png.bak",
    "\xC2\xA0"
    "00005.PNG",
    "\xEF\xBC\x90\xEF\xBC\x90\xEF\xBC\x90\xEF\xBC\x90\xEF\xBC\x90\xEF\xBC\x95.PNG",
    "\xE2\x88\x92"
    "00005.PNG",
    "\xE3\x81\x82\xE3\x81\x82\xE3\x81\x82\xE3\x81\x82.PNG"};

VLMC_BookmarksSetting &store() { return *VLMC_BookmarksSetting::getInstance(); }

void showBookmark(int id)
{
    VLMS_Bookmark bookmark = {utf8("kept"), utf8("kept"), utf8("kept")};
    const bool found = store().getBookmark(id, &bookmark);
    line("bookmark " + shown(id) + ": " + shown(found) + ' ' + shown(bookmark.title) + ' '
         + shown(bookmark.url) + ' ' + shown(bookmark.thumbnailPath));
}

void showBookmarks()
{
    line("bookmarks", store().getBookmarkCnt());
    for (int id = -1; id <= store().getBookmarkCnt(); ++id) {
        showBookmark(id);
    }
}

void loadAndSave(QString &folder)
{
    int last = -1;
    store().loadBookmark(&folder, 1, last);
    line("last number", last);
    showBookmarks();
    store().saveBookmark(&folder, 1);
    showBookmarks();
}

void changeField(int id, QString text, int field)
{
    switch (field) {
    case 0:
        return line("title", store().setBookmarkTitle(id, &text));
    case 1:
        return line("URL", store().setBookmarkURL(id, &text));
    default:
        return line("path", store().setBookmarkThumbnailFilePath(id, &text));
    }
}

void showFields(int id)
{
    QString title = utf8("kept");
    QString url = utf8("kept");
    QString path = utf8("kept");
    line("title", store().getBookmarkTitle(id, &title));
    line("URL", store().getBookmarkURL(id, &url));
    line("path", store().getBookmarkThumbnailFilePath(id, &path));
    line("fields", QStringList() << title << url << path);
}

void takeStep(Draw &draw)
{
    const int count = store().getBookmarkCnt();
    const int kind = draw.below(6);
    VLMS_Bookmark bookmark = {draw.text(), draw.text(), draw.text()};
    if (kind == 0 || count > kKept) {
        store().deleteBookmark(draw.id(count));
    } else if (kind < 3) {
        const int field = draw.below(3);
        changeField(draw.id(count), bookmark.title, field);
    } else {
        line("set", store().setBookmark(&bookmark, char(draw.below(2) * 200)));
    }
    line("bookmarks", store().getBookmarkCnt());
    line("last number", store().getLastNumber());
    showFields(draw.id(count));
    const QString text = draw.utf8Text();
    line("clipped", store().ClipString(text, draw.below(120) - 1));
}

// What is saved, and what is in memory afterwards, are not the same paths.
void changePaths(QString &folder)
{
    store().saveBookmark(&folder, 1);
    showBookmarks();
    store().removeThumbnailFilePath();
    showBookmarks();
    store().addThumbnailFilePath(&folder);
    store().addThumbnailFilePath(nullptr);
    int index = -3;
    while (VLMC_XMLNode *const thumbnail = store().getThumbNode(index)) {
        line("path " + shown(index) + ": " + shown(store().getThumbFilePath(thumbnail)));
        ++index;
    }
    line("positions", index);
    int last = -1;
    store().loadBookmark(&folder, 1, last);
    showBookmarks();
}

void playNames()
{
    for (const char *const name : kNames) {
        const Part part("bookmarks, thumbnail '" + QByteArray(name) + '\'');
        QString folder = newFolder();
        QByteArray document = kDocument;
        writeFile(folder + utf8(kFile), document.replace("000012.PNG", name));
        loadAndSave(folder);
        showFolder(folder);
        showLog();
    }
}

void refuseFields(VLMC_BookmarksSetting &unloaded)
{
    line("bookmark", unloaded.getBookmark(0, nullptr));
    line("set", unloaded.setBookmark(nullptr, 0));
    line("title", unloaded.setBookmarkTitle(0, nullptr));
    line("title", unloaded.getBookmarkTitle(0, nullptr));
    line("URL", unloaded.setBookmarkURL(0, nullptr));
    line("URL", unloaded.getBookmarkURL(0, nullptr));
    line("path", unloaded.setBookmarkThumbnailFilePath(0, nullptr));
    line("path", unloaded.getBookmarkThumbnailFilePath(0, nullptr));
    line("path", unloaded.getThumbFilePath(nullptr));
    int index = 0;
    line("node", unloaded.getThumbNode(index) != nullptr);
    line("child", unloaded.getBookmarkChildNode(0, 3) != nullptr);
}

void playRefused()
{
    const Part part("bookmarks, what is refused");
    VLMC_BookmarksSetting unloaded;
    QString empty;
    QString folder = newFolder();
    int last = 5;
    VLMS_Bookmark bookmark = {utf8("a"), utf8("b"), utf8("c")};
    refuseFields(unloaded);
    line("set", unloaded.setBookmark(&bookmark, 0));
    unloaded.saveBookmark(&folder, 1);
    unloaded.loadBookmark(nullptr, 1, last);
    unloaded.loadBookmark(&empty, 1, last);
    unloaded.loadBookmark(&folder, 0, last);
    unloaded.saveBookmark(nullptr, 1);
    unloaded.saveBookmark(&empty, 1);
    unloaded.saveBookmark(&folder, -1);
    line("last number", last);
    unloaded.loadBookmark(&folder, 1, last);
    line("last number", last);
    refuseFields(unloaded);
    showFolder(folder);
    showLog();
}
} // namespace

void playBookmarks()
{
    playRefused();
    playDocuments(kFile, kDocument, loadAndSave);
    playNames();
    Draw draw(8);
    playSteps(
        "bookmarks", 20, [&] { takeStep(draw); }, changePaths);
}
