#ifndef VLMC_BOOKMARKSSETTING_H
#define VLMC_BOOKMARKSSETTING_H

#include "core/VLMC_XMLSetting.h"

class QImage;

/// One bookmark, as operations take and give it.
struct VLMS_Bookmark {
    /// The page's title; a bookmark holds up to 100 bytes of UTF-8.
    QString title;
    /// The page's address, at most 256 bytes of UTF-8.
    QString url;
    /// The thumbnail's whole path: the folder of the bookmarks, "thumbnail/" and the file name.
    QString thumbnailPath;
};

/**
 * The browser's bookmarks, kept in "bookmark.xml" in a directory that the caller names, each with
 * the path of a thumbnail image in the subdirectory "thumbnail/". Bookmarks are addressed by id,
 * their position in the list, which is valid until the next load, setBookmark or deleteBookmark.
 * Changes of the list stay in memory until saveBookmark; image files are written, read and removed
 * at once, and only by the operations for them. The file holds the bare names of the images, the
 * list in memory their whole paths.
 *
 * Directories end with "/": names are appended as they stand. Limits count bytes of UTF-8. Output
 * arguments are written on success only, unless stated otherwise; null arguments give false or do
 * nothing. Used from one thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_BookmarksSetting : public VLMC_XMLSetting
{
public:
    /// The one list of the process, created on the first call and destroyed at exit.
    static VLMC_BookmarksSetting *getInstance();

    VLMC_BookmarksSetting();

    /// Replaces the list by the one in the directory; a missing file gives an empty list.
    /// lastNumber becomes the highest thumbnail number in use, from which setThumbnail counts on. A
    /// null or empty directory and a max below 1 are refused with a warning in the log and change
    /// nothing. max limits nothing.
    void loadBookmark(QString *dir, int max, int &lastNumber);
    /// Writes the whole list into the directory; before the first load no file is touched. Refuses
    /// what loadBookmark refuses. max limits nothing.
    void saveBookmark(QString *dir, int max);

    /// The number of bookmarks; 0 before the first load.
    int getBookmarkCnt();
    /// Reads one bookmark; false when there is none with this id. A title over 100 bytes and a
    /// thumbnail path over 256 bytes come back empty, a URL over 256 bytes as "about:blank". A
    /// field whose element is missing stays as it is.
    bool getBookmark(int id, VLMS_Bookmark *out);
    /// Adds a bookmark at the end of the list (atFront 0) or at its front (any other value), even
    /// one that is listed already. A title over 100 bytes is clipped; a URL or a thumbnail path
    /// over 256 bytes is refused. Before the first load there is no list: the result is true and
    /// nothing is kept.
    bool setBookmark(VLMS_Bookmark *bookmark, char atFront);
    /// Removes a bookmark from the list; its thumbnail file stays. Does nothing if there is none
    /// with this id.
    void deleteBookmark(int id);

    /// False when there is no title. A title over 100 bytes gives true and leaves out alone.
    bool getBookmarkTitle(int id, QString *out);
    /// Replaces the title by one of any length, which is not clipped.
    bool setBookmarkTitle(int id, QString *title);
    /// False when there is no URL. A URL over 256 bytes reads as "about:blank".
    bool getBookmarkURL(int id, QString *out);
    /// Replaces the URL; false for one over 256 bytes.
    bool setBookmarkURL(int id, QString *url);
    /// An element of the entry with this id: 0 its title, 1 its URL, 2 its thumbnail path. Null if
    /// there is none, and for any other number.
    VLMC_XMLNode *getBookmarkChildNode(int id, char which);
    /// The text cut to at most maxBytes bytes of UTF-8; unchanged for a maxBytes below 1. A text
    /// ends at an embedded zero character.
    QString ClipString(const QString &text, int maxBytes);

    /// Saves the image as PNG under the next number: increments number, and appends the file name
    /// of that number to path, which the caller sets to the folder of the thumbnails. Both keep
    /// their new values if saving fails: the file is then as it was. False also if there is
    /// something other than a regular file at that path, such as a symbolic link.
    bool setThumbnail(QImage *image, QString *path, int &number);
    /// Loads a PNG file; false, and the image untouched, when that fails or the file has more than
    /// 64 Mi pixels.
    bool getThumbnail(QImage *image, QString *path);
    /// Removes a thumbnail file.
    bool deleteThumbnail(QString *path);
    /// The highest number among the names of the thumbnails, 0 when there is none. The names are
    /// read up to the first bookmark without a thumbnail element.
    int getLastNumber();
    /// The thumbnail element of the first bookmark at position index or after it; index becomes the
    /// bookmark's position. Null if there is no such bookmark, or no such element in it.
    VLMC_XMLNode *getThumbNode(int &index);
    /// The path in a thumbnail element; empty for null and when it is longer than 256 bytes.
    QString getThumbFilePath(VLMC_XMLNode *node);
    /// Writes a path of any length to a thumbnail element.
    bool setThumbFilePath(VLMC_XMLNode *node, QString &path);
    /// False when there is no thumbnail element. A path over 256 bytes reads as empty.
    bool getBookmarkThumbnailFilePath(int id, QString *out);
    /// Replaces the thumbnail path; false for one over 256 bytes.
    bool setBookmarkThumbnailFilePath(int id, QString *path);
    /// Replaces the path of every bookmark, up to the first one without a thumbnail element, by
    /// what convert makes of it and dir. A path over 256 bytes is converted as an empty one.
    void changeThumbFilePath(QString &dir, QString (*convert)(QString &path, QString &dir));
    /// Cuts paths to their last ten characters, the file names.
    void removeThumbnailFilePath();
    /// Puts dir and "thumbnail/" before the paths.
    void addThumbnailFilePath(QString *dir);

protected:
    /// The max of the last loadBookmark, kept for information only; 0 at first.
    int loadMax;

private:
    VLM_HIDDEN int loadThumbnailFilePath(QString &dir);
};

#endif
