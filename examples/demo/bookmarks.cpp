#include "examples/demo/demo.h"

#include "bookmarks/VLMC_BookmarksSetting.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>

namespace
{
const int kMaxBookmarks = 100;
const char kAtEnd = 0;
const char kAtFront = 1;

// A picture to recognise a page by: a sky in its colour over a few lines.
QImage paintThumbnail(const QColor &colour)
{
    QImage image(160, 120, QImage::Format_RGB32);
    image.fill(colour);
    QLinearGradient sky(0, 0, 0, 60);
    sky.setColorAt(0, colour);
    sky.setColorAt(1, Qt::white);
    QPainter painter(&image);
    painter.fillRect(0, 0, 160, 60, sky);
    painter.setPen(Qt::black);
    for (int y = 70; y < 115; y += 10) {
        painter.drawLine(10, y, 150 - y / 2, y);
    }
    return image;
}

// Bookmarks a page with its thumbnail; lastNumber goes up by one.
void addBookmark(const QString &directory, const char *title, const char *url, const QColor &colour,
                 char place, int &lastNumber)
{
    VLMC_BookmarksSetting *const bookmarks = VLMC_BookmarksSetting::getInstance();
    VLMS_Bookmark bookmark;
    bookmark.title = text(title);
    bookmark.url = text(url);
    bookmark.thumbnailPath = directory + text("thumbnail/"); // the file name comes with the image
    QImage image = paintThumbnail(colour);
    expect(bookmarks->setThumbnail(&image, &bookmark.thumbnailPath, lastNumber),
           "the thumbnail is written");
    expect(bookmarks->setBookmark(&bookmark, place), "the bookmark is accepted");
    say(text("Added \"%1\" at the %2.")
            .arg(bookmark.title)
            .arg(text(place == kAtFront ? "front" : "end")));
}

void listBookmarks()
{
    VLMC_BookmarksSetting *const bookmarks = VLMC_BookmarksSetting::getInstance();
    for (int id = 0; id < bookmarks->getBookmarkCnt(); ++id) {
        VLMS_Bookmark bookmark;
        QImage image;
        expect(bookmarks->getBookmark(id, &bookmark), "the bookmark is read");
        expect(bookmarks->getThumbnail(&image, &bookmark.thumbnailPath), "the thumbnail is read");
        say(text("%1: %2, %3, %4 x %5 pixels in %6")
                .arg(id)
                .arg(bookmark.title)
                .arg(bookmark.url)
                .arg(image.width())
                .arg(image.height())
                .arg(bookmark.thumbnailPath));
    }
}
} // namespace

void showBookmarks(const QString &profile)
{
    heading("Bookmarks: bookmark.xml, and an image for each in thumbnail/");
    QString directory = profile;
    expect(QDir(directory).mkpath(text("thumbnail")), "the folder for the thumbnails is there");
    VLMC_BookmarksSetting *const bookmarks = VLMC_BookmarksSetting::getInstance();
    int lastNumber = 0;
    bookmarks->loadBookmark(&directory, kMaxBookmarks, lastNumber);
    const int before = bookmarks->getBookmarkCnt();
    say(text("The list begins with %1 bookmarks.").arg(before));

    addBookmark(directory, "Weather", "http://www.example.com/weather", Qt::blue, kAtEnd,
                lastNumber);
    addBookmark(directory, "\xe5\x9c\xb0\xe5\x9b\xb3 (maps)", "http://www.example.com/maps?a=1&b=2",
                Qt::darkGreen, kAtEnd, lastNumber);
    addBookmark(directory, "News", "http://www.example.com/news", Qt::red, kAtFront, lastNumber);
    bookmarks->saveBookmark(&directory, kMaxBookmarks);

    bookmarks->loadBookmark(&directory, kMaxBookmarks, lastNumber);
    expect(bookmarks->getBookmarkCnt() == before + 3, "the bookmarks are kept");
    say(text("Saved, loaded again; the last thumbnail has number %1.").arg(lastNumber));
    listBookmarks();
    printFile(directory + text("bookmark.xml"));
}
