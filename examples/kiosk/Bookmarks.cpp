#include "examples/kiosk/Bookmarks.h"

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "examples/kiosk/Text.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtGui/QImage>

namespace
{
// The store has no limit of its own.
const int kMaxBookmarks = 100;
const char kAtEnd = 0;
const char kFolder[] = "thumbnail/";
} // namespace

Bookmarks::Bookmarks(const QString &directory) : m_directory(directory), m_lastNumber(0)
{
    QDir().mkpath(m_directory + text(kFolder));
    VLMC_BookmarksSetting::getInstance()->loadBookmark(&m_directory, kMaxBookmarks, m_lastNumber);
    removeUnusedThumbnails();
}

bool Bookmarks::add(const QUrl &url, const QString &title, const QImage &picture)
{
    VLMC_BookmarksSetting *const store = VLMC_BookmarksSetting::getInstance();
    VLMS_Bookmark bookmark;
    bookmark.url = url.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo);
    bookmark.title = title.isEmpty() ? bookmark.url : title; // which the store clips
    bookmark.thumbnailPath = m_directory + text(kFolder);    // the name comes with the image
    if (store->getBookmarkCnt() >= kMaxBookmarks || contains(bookmark.url)) {
        return false;
    }
    QImage image = picture;
    if (!store->setThumbnail(&image, &bookmark.thumbnailPath, m_lastNumber)
        || !store->setBookmark(&bookmark, kAtEnd)) {
        store->deleteThumbnail(&bookmark.thumbnailPath);
        return false;
    }
    store->saveBookmark(&m_directory, kMaxBookmarks);
    return true;
}

bool Bookmarks::remove(int id)
{
    VLMC_BookmarksSetting *const store = VLMC_BookmarksSetting::getInstance();
    VLMS_Bookmark bookmark;
    if (!store->getBookmark(id, &bookmark)) {
        return false;
    }
    store->deleteBookmark(id); // the others get new ids
    store->saveBookmark(&m_directory, kMaxBookmarks);
    store->deleteThumbnail(&bookmark.thumbnailPath);
    return true;
}

bool Bookmarks::contains(const QString &url) const
{
    VLMC_BookmarksSetting *const store = VLMC_BookmarksSetting::getInstance();
    for (int id = 0; id < store->getBookmarkCnt(); ++id) {
        QString known;
        if (store->getBookmarkURL(id, &known) && known == url) {
            return true;
        }
    }
    return false;
}

// Left by a run that was killed between the image and the list.
void Bookmarks::removeUnusedThumbnails() const
{
    VLMC_BookmarksSetting *const store = VLMC_BookmarksSetting::getInstance();
    QDir folder(m_directory + text(kFolder));
    QStringList unused = folder.entryList(QStringList(text("*.PNG")), QDir::Files);
    for (int id = 0; id < store->getBookmarkCnt(); ++id) {
        QString path;
        store->getBookmarkThumbnailFilePath(id, &path);
        unused.removeAll(QFileInfo(path).fileName());
    }
    for (const QString &name : qAsConst(unused)) {
        folder.remove(name);
    }
}
