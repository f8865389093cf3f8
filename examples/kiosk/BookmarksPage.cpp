#include "examples/kiosk/BookmarksPage.h"

#include "bookmarks/VLMC_BookmarksSetting.h"

#include <QtCore/QUrl>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

namespace
{
const QSize kPictureSize(160, 120);
const QSize kCellSize(200, 190); // two lines of title below the picture
const int kGap = 10;

QIcon pictureOf(VLMS_Bookmark &bookmark)
{
    QImage image;
    if (!VLMC_BookmarksSetting::getInstance()->getThumbnail(&image, &bookmark.thumbnailPath)) {
        image = QImage(kPictureSize, QImage::Format_RGB32);
        image.fill(Qt::lightGray);
    }
    // Most pages are white, as the list is.
    QPainter painter(&image);
    painter.setPen(Qt::gray);
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    painter.end();
    return QIcon(QPixmap::fromImage(image));
}
} // namespace

BookmarksPage::BookmarksPage(QWidget *parent) : QListWidget(parent)
{
    setViewMode(QListView::IconMode);
    setIconSize(kPictureSize);
    setGridSize(kCellSize);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setWordWrap(true);
    connect(this, &QListWidget::itemActivated, this,
            [this](QListWidgetItem *item) { emit chosen(item->data(Qt::UserRole).toUrl()); });
}

void BookmarksPage::refresh()
{
    clear();
    VLMC_BookmarksSetting *const store = VLMC_BookmarksSetting::getInstance();
    for (int id = 0; id < store->getBookmarkCnt(); ++id) {
        VLMS_Bookmark bookmark;
        if (store->getBookmark(id, &bookmark)) {
            QListWidgetItem *const item =
                new QListWidgetItem(pictureOf(bookmark), bookmark.title, this);
            item->setData(Qt::UserRole, QUrl(bookmark.url));
            item->setToolTip(bookmark.url);
            item->setSizeHint(kCellSize - QSize(kGap, kGap));
        }
    }
}

void BookmarksPage::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete && currentRow() >= 0) {
        emit removalWanted(currentRow()); // the row is the id, by refresh()
        return;
    }
    QListWidget::keyPressEvent(event);
}
