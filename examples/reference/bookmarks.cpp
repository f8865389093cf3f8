#include "bookmarks/VLMC_BookmarksSetting.h"
#include "examples/reference/Reference.h"

#include <QtCore/QFile>
#include <QtGui/QImage>

namespace
{
const int kMaxBookmarks = 50;

int load(QString directory)
{
    //! [bookmarks: load]
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    int lastNumber = 0; // the browser keeps it: setThumbnail counts on from here
    bookmarks->loadBookmark(&directory, kMaxBookmarks, lastNumber);
    //! [bookmarks: load]
    return lastNumber;
}

bool add(const QString &directory, int &lastNumber, QImage page)
{
    //! [bookmarks: add]
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    VLMS_Bookmark bookmark;
    bookmark.title = QString::fromUtf8("Welcome");
    bookmark.url = QString::fromUtf8("http://www.example.com/");
    bookmark.thumbnailPath = directory + QString::fromUtf8("thumbnail/"); // has to exist
    if (!bookmarks->setThumbnail(&page, &bookmark.thumbnailPath, lastNumber)) {
        bookmark.thumbnailPath.clear(); // no image, but the bookmark is worth keeping
    }
    const bool added = bookmarks->setBookmark(&bookmark, 1); // in front of the others
    //! [bookmarks: add]
    return added;
}

void change(int id)
{
    //! [bookmarks: change]
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    QString title = bookmarks->ClipString(QString::fromUtf8("A better title"), 100);
    QString url = QString::fromUtf8("http://www.example.com/start");
    bookmarks->setBookmarkTitle(id, &title); // does not clip by itself
    if (!bookmarks->setBookmarkURL(id, &url)) {
        // No such bookmark, or the URL has more than 256 bytes.
    }
    //! [bookmarks: change]
}

QImage show(int id, VLMS_Bookmark *shown)
{
    //! [bookmarks: read]
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    VLMS_Bookmark bookmark;
    QImage thumbnail;
    if (bookmarks->getBookmark(id, &bookmark)) {
        bookmarks->getThumbnail(&thumbnail, &bookmark.thumbnailPath); // stays null without a file
    }
    //! [bookmarks: read]
    *shown = bookmark;
    return thumbnail;
}

void remove(int id)
{
    //! [bookmarks: remove]
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    QString path;
    if (bookmarks->getBookmarkThumbnailFilePath(id, &path)) {
        bookmarks->deleteThumbnail(&path); // at once; the list is saved later
    }
    bookmarks->deleteBookmark(id);
    //! [bookmarks: remove]
}

void save(QString directory)
{
    //! [bookmarks: save]
    VLMC_BookmarksSetting::getInstance()->saveBookmark(&directory, kMaxBookmarks);
    //! [bookmarks: save]
}
} // namespace

void exampleOfBookmarks(QString directory)
{
    VLMC_BookmarksSetting *bookmarks = VLMC_BookmarksSetting::getInstance();
    int lastNumber = load(directory);
    EXPECT(lastNumber == 0 && bookmarks->getBookmarkCnt() == 0);
    QImage page(12, 9, QImage::Format_RGB32);
    page.fill(0);
    EXPECT(add(directory, lastNumber, page) && add(directory, lastNumber, page));
    change(0);
    save(directory);
    EXPECT(load(directory) == 2 && bookmarks->getBookmarkCnt() == 2);
    VLMS_Bookmark shown;
    EXPECT(show(0, &shown).size() == page.size());
    EXPECT(shown.title == utf8("A better title"));
    EXPECT(shown.url == utf8("http://www.example.com/start"));
    EXPECT(shown.thumbnailPath == directory + utf8("thumbnail/000002.PNG"));
    remove(0);
    EXPECT(!QFile::exists(directory + utf8("thumbnail/000002.PNG")));
    EXPECT(bookmarks->getBookmarkCnt() == 1 && !show(0, &shown).isNull());
    EXPECT(shown.title == utf8("Welcome"));
}
