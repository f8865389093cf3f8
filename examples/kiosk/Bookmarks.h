#ifndef EXAMPLES_KIOSK_BOOKMARKS_H
#define EXAMPLES_KIOSK_BOOKMARKS_H

#include <QtCore/QString>
#include <QtCore/QUrl>

class QImage;

/**
 * The bookmarks and their thumbnails. A bookmark takes two files, which cannot be replaced
 * together. They are written in an order that leaves, if the browser is killed in between, an image
 * too many and never one too few. The next start removes that image.
 */
class Bookmarks
{
public:
    explicit Bookmarks(const QString &directory);

    /// Adds the page at the end, with a picture of it. False for a page that is there already, for
    /// a URL that is too long, and when the list is full.
    bool add(const QUrl &url, const QString &title, const QImage &picture);
    /// Takes out the bookmark with this id, and its thumbnail. False when there is none.
    bool remove(int id);

private:
    bool contains(const QString &url) const;
    void removeUnusedThumbnails() const;

    QString m_directory;
    int m_lastNumber;
};

#endif
