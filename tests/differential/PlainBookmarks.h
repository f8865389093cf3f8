#ifndef TESTS_DIFFERENTIAL_PLAINBOOKMARKS_H
#define TESTS_DIFFERENTIAL_PLAINBOOKMARKS_H

#include "tests/differential/PlainStore.h"

struct VLMS_Bookmark;

/// The rules of VLMC_BookmarksSetting, those on image files apart.
class PlainBookmarks : public PlainStore
{
public:
    typedef QString (*Convert)(QString &path, QString &dir);

    void loadBookmark(const QString *dir, int max, int &lastNumber);
    void saveBookmark(const QString *dir, int max);
    int getBookmarkCnt();
    bool getBookmark(int id, VLMS_Bookmark *out);
    bool setBookmark(const VLMS_Bookmark *bookmark, char atFront);
    void deleteBookmark(int id);
    bool getBookmarkTitle(int id, QString *out);
    bool setBookmarkTitle(int id, const QString *title);
    bool getBookmarkURL(int id, QString *out);
    bool setBookmarkURL(int id, const QString *url);
    ElementPointer getBookmarkChildNode(int id, char which);
    QString ClipString(const QString &text, int maxBytes) { return clip(text, maxBytes); }

    int getLastNumber();
    ElementPointer getThumbNode(int &index);
    QString getThumbFilePath(const ElementPointer &node);
    bool setThumbFilePath(const ElementPointer &node, const QString &path);
    bool getBookmarkThumbnailFilePath(int id, QString *out);
    bool setBookmarkThumbnailFilePath(int id, const QString *path);
    void changeThumbFilePath(QString dir, Convert convert);
    void removeThumbnailFilePath();
    void addThumbnailFilePath(const QString *dir);
};

#endif
