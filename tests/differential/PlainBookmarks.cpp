#include "tests/differential/PlainBookmarks.h"

#include "bookmarks/VLMC_BookmarksSetting.h"

namespace
{
QString stripThumbnailDir(QString &path, QString &) { return path.right(10); }

QString prependThumbnailDir(QString &path, QString &dir)
{
    return dir + textOf("thumbnail/") + path;
}
} // namespace

void PlainBookmarks::loadBookmark(const QString *dir, int max, int &lastNumber)
{
    print(3, "[VLMC_BookmarksSetting::loadBookmark] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_BookmarksSetting::loadBookmark] Path is NULL or empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_BookmarksSetting::loadBookmark] Error load_max:" + QByteArray::number(max));
        return;
    }
    deleteAllSetting();
    load(*dir + textOf("bookmark.xml"));
    setIds();
    addThumbnailFilePath(dir);
    lastNumber = getLastNumber();
    print(3, "[VLMC_BookmarksSetting::loadBookmark] end");
}

void PlainBookmarks::saveBookmark(const QString *dir, int max)
{
    print(3, "[VLMC_BookmarksSetting::saveBookmark] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_BookmarksSetting::saveBookmark] Path is NULL or empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_BookmarksSetting::saveBookmark] Error save_max:" + QByteArray::number(max));
        return;
    }
    nameRoot("bookmarks");
    removeThumbnailFilePath();
    save(*dir + textOf("bookmark.xml"));
    addThumbnailFilePath(dir);
    print(3, "[VLMC_BookmarksSetting::saveBookmark] end");
}

int PlainBookmarks::getBookmarkCnt() { return count("bookmark"); }

bool PlainBookmarks::getBookmark(int id, VLMS_Bookmark *out)
{
    if (!out || !byId(id)) {
        return false;
    }
    QString title;
    if (getBookmarkTitle(id, &title)) {
        out->title = title;
    }
    QString url;
    if (getBookmarkURL(id, &url)) {
        out->url = url;
    }
    QString thumbnailPath;
    if (getBookmarkThumbnailFilePath(id, &thumbnailPath)) {
        out->thumbnailPath = thumbnailPath;
    }
    return true;
}

bool PlainBookmarks::setBookmark(const VLMS_Bookmark *bookmark, char atFront)
{
    print(3, "[VLMC_BookmarksSetting::setBookmark]");
    if (!bookmark || utf8Bytes(bookmark->url) > 256 || utf8Bytes(bookmark->thumbnailPath) > 256) {
        return false;
    }
    const ElementPointer entry = add(root, "bookmark", QString(), 0, atFront != 0);
    QString title = bookmark->title;
    if (utf8Bytes(title) > 100) {
        title = clip(title, 100);
    }
    add(entry, "href", bookmark->url);
    add(entry, "title", title);
    add(entry, "thumbnail", bookmark->thumbnailPath);
    setIds();
    return true;
}

void PlainBookmarks::deleteBookmark(int id)
{
    print(3, "[VLMC_BookmarksSetting::deleteBookmark] si_nodeNum:" + QByteArray::number(id));
    deleteById(id);
    setIds();
}

bool PlainBookmarks::getBookmarkTitle(int id, QString *out)
{
    const ElementPointer title = getBookmarkChildNode(id, 0);
    if (!out || !title) {
        return false;
    }
    if (utf8Bytes(title->text) <= 100) {
        *out = title->text;
    }
    return true;
}

bool PlainBookmarks::setBookmarkTitle(int id, const QString *title)
{
    const ElementPointer node = getBookmarkChildNode(id, 0);
    if (!title || !node) {
        return false;
    }
    node->text = *title;
    return true;
}

bool PlainBookmarks::getBookmarkURL(int id, QString *out)
{
    const ElementPointer url = getBookmarkChildNode(id, 1);
    if (!out || !url) {
        return false;
    }
    *out = utf8Bytes(url->text) <= 256 ? url->text : textOf("about:blank");
    return true;
}

bool PlainBookmarks::setBookmarkURL(int id, const QString *url)
{
    const ElementPointer node = getBookmarkChildNode(id, 1);
    if (!url || utf8Bytes(*url) > 256 || !node) {
        return false;
    }
    node->text = *url;
    return true;
}

ElementPointer PlainBookmarks::getBookmarkChildNode(int id, char which)
{
    if (which == 0) {
        return childOf(byId(id), "title");
    }
    if (which == 1) {
        return childOf(byId(id), "href");
    }
    if (which == 2) {
        return childOf(byId(id), "thumbnail");
    }
    return ElementPointer();
}

int PlainBookmarks::getLastNumber()
{
    int last = 0;
    int i = 0;
    while (i < childCount()) {
        const ElementPointer node = getThumbNode(i);
        if (!node) {
            break;
        }
        QString digits = getThumbFilePath(node).right(10);
        digits.chop(4);
        last = qMax(last, digits.toInt());
        i = i + 1;
    }
    print(3, "[VLMC_BookmarksSetting::getLastNumber] last number:" + QByteArray::number(last));
    return last;
}

ElementPointer PlainBookmarks::getThumbNode(int &index)
{
    while (index < childCount()) {
        const ElementPointer child = root->children.at(index);
        if (child && child->name == textOf("bookmark")) {
            return childOf(child, "thumbnail");
        }
        ++index;
    }
    return ElementPointer();
}

QString PlainBookmarks::getThumbFilePath(const ElementPointer &node)
{
    return node && utf8Bytes(node->text) <= 256 ? node->text : QString();
}

bool PlainBookmarks::setThumbFilePath(const ElementPointer &node, const QString &path)
{
    if (!node) {
        return false;
    }
    node->text = path;
    return true;
}

bool PlainBookmarks::getBookmarkThumbnailFilePath(int id, QString *out)
{
    const ElementPointer node = getBookmarkChildNode(id, 2);
    if (!out || !node) {
        return false;
    }
    *out = getThumbFilePath(node);
    return true;
}

bool PlainBookmarks::setBookmarkThumbnailFilePath(int id, const QString *path)
{
    if (!path || utf8Bytes(*path) > 256) {
        return false;
    }
    return setThumbFilePath(getBookmarkChildNode(id, 2), *path);
}

void PlainBookmarks::changeThumbFilePath(QString dir, Convert convert)
{
    if (!convert || childCount() < 1) {
        return;
    }
    const int ids = childCount();
    int i = 0;
    do {
        const ElementPointer node = getThumbNode(i);
        if (!node) {
            return;
        }
        QString path = getThumbFilePath(node);
        setThumbFilePath(node, convert(path, dir));
        i = i + 1;
    } while (i < ids);
}

void PlainBookmarks::removeThumbnailFilePath()
{
    changeThumbFilePath(QString(), stripThumbnailDir);
}

void PlainBookmarks::addThumbnailFilePath(const QString *dir)
{
    if (dir) {
        changeThumbFilePath(*dir, prependThumbnailDir);
    }
}
