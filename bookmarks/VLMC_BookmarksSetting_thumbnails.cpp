// The thumbnails of the bookmarks: their files, their numbers, and the paths to them.

#include "bookmarks/VLMC_BookmarksSetting.h"

#include "bookmarks/BookmarkElements_p.h"
#include "core/Entries_p.h"
#include "core/NodeView_p.h"
#include "core/Numbering_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "files/RegularFile_p.h"
#include "files/ReplaceFile_p.h"
#include "text/Utf8_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QStringBuilder>
#include <QtGui/QImage>
#include <QtGui/QImageReader>

using namespace vlm;
using namespace vlm::bookmarks;

namespace
{
const char kSuffix[] = ".PNG";
const char kFormat[] = "PNG";
const int kDefaultQuality = -1;

const int kNumberDigits = 6;
// Characters of a file name with that many digits; a longer name loses its first ones.
const int kNameChars = 10;
const int kSuffixChars = 4;

// In memory a pixel takes 4 bytes as a rule. A file of some 100 KB may promise billions of them.
const qint64 kMaxPixels = qint64(64) * 1024 * 1024;

bool replacePicture(const QString &path, const QByteArray &png)
{
    ReplaceFile file;
    return isFileOrFree(path) && file.open(path, ReplaceFile::RefuseLinks) && file.commit(png);
}

// Only the header has been read when this is known.
bool isTooLarge(const QSize &size)
{
    return qint64(size.width()) * qint64(size.height()) > kMaxPixels;
}

QString thumbnailName(int number)
{
    return QString::fromLatin1("%1").arg(number, kNumberDigits, 10, QLatin1Char('0'))
           + QEXC_TextCodec::fromSJIS(kSuffix);
}

// 0 for a name without a number.
int thumbnailNumber(const QString &path)
{
    const int start = qMax(0, int(path.size()) - kNameChars);
    const int size = qMax(0, int(path.size()) - kSuffixChars - start);
    const int number = plainNumber(path.constData() + start, size);
    return number >= 0 ? number : path.mid(start, size).toInt();
}

QString stripThumbnailDir(QString &path, QString &) { return path.right(kNameChars); }

QString prependThumbnailDir(QString &path, QString &dir)
{
    return dir % QLatin1String(kThumbnailFolder) % path;
}

// Empty when the path is over the limit.
QString pathIn(VLMC_XMLNode *thumbnail)
{
    const QString &path = thumbnail->getText();
    return fitsUtf8(path, kMaxThumbnailPathBytes) ? path : QString();
}

void convertPath(VLMC_XMLNode *thumbnail, QString &dir,
                 QString (*convert)(QString &path, QString &dir))
{
    QString path = pathIn(thumbnail);
    QString converted = convert(path, dir);
    NodeView::takeText(*thumbnail, converted);
}

int reported(int lastNumber)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::getLastNumber] last number:%d",
                    lastNumber);
    return lastNumber;
}

// Does the work with the thumbnail elements of the bookmarks, up to the first bookmark without one:
// later ones keep their paths, and their numbers do not count. Elements that are no bookmarks are
// passed over.
template <typename Work>
void withEachThumbnail(VLMC_XMLNode *root, Work work)
{
    if (!root) {
        return;
    }
    const QList<VLMC_XMLNode *> children = NodeView::children(*root);
    firstEntry(children, kThumbnail, [&](VLMC_XMLNode *child, VLMC_XMLNode *thumbnail) {
        if (!child || !NodeView::isNamed(*child, QLatin1String(kEntry))) {
            return false;
        }
        if (thumbnail) {
            work(thumbnail);
        }
        return !thumbnail;
    });
}

void convertPaths(VLMC_XMLNode *root, QString &dir, QString (*convert)(QString &path, QString &dir))
{
    withEachThumbnail(root, [&](VLMC_XMLNode *thumbnail) { convertPath(thumbnail, dir, convert); });
}
} // namespace

bool VLMC_BookmarksSetting::setThumbnail(QImage *image, QString *path, int &number)
{
    if (!image || !path) {
        return false;
    }
    // Unsigned, so that even the highest number has a successor.
    number = int(unsigned(number) + 1u);
    *path += thumbnailName(number);
    QBuffer png;
    return image->save(&png, kFormat, kDefaultQuality) && replacePicture(*path, png.data());
}

// Loads into an image of its own: with some versions of Qt a failed load would destroy the
// caller's.
bool VLMC_BookmarksSetting::getThumbnail(QImage *image, QString *path)
{
    if (!image || !path || !isFileOrFree(*path)) {
        return false;
    }
    QImageReader reader(*path, kFormat);
    if (isTooLarge(reader.size())) {
        return false;
    }
    const QImage loaded = reader.read();
    if (loaded.isNull()) {
        return false;
    }
    *image = loaded;
    return true;
}

bool VLMC_BookmarksSetting::deleteThumbnail(QString *path) { return path && QFile::remove(*path); }

int VLMC_BookmarksSetting::getLastNumber()
{
    int last = 0;
    withEachThumbnail(root, [&](VLMC_XMLNode *thumbnail) {
        last = qMax(last, thumbnailNumber(pathIn(thumbnail)));
    });
    return reported(last);
}

VLMC_XMLNode *VLMC_BookmarksSetting::getThumbNode(int &index)
{
    if (!root) {
        return nullptr;
    }
    index = qMax(index, 0);
    QString name = elementName(kEntry);
    return childNamed(root->getChildByName(name, index), kThumbnail);
}

QString VLMC_BookmarksSetting::getThumbFilePath(VLMC_XMLNode *node)
{
    return node ? pathIn(node) : QString();
}

bool VLMC_BookmarksSetting::setThumbFilePath(VLMC_XMLNode *node, QString &path)
{
    if (!node) {
        return false;
    }
    node->setText(path);
    return true;
}

void VLMC_BookmarksSetting::changeThumbFilePath(QString &dir,
                                                QString (*convert)(QString &path, QString &dir))
{
    if (!convert) {
        return;
    }
    // Looked up one by one, as the conversion may change the list. It is not called for what it
    // adds behind the others, or one that always adds would never end.
    const int count = getXMLNodeCnt();
    int index = 0;
    while (index < count) {
        VLMC_XMLNode *const thumbnail = getThumbNode(index);
        if (!thumbnail) {
            return;
        }
        convertPath(thumbnail, dir, convert);
        ++index;
    }
}

void VLMC_BookmarksSetting::removeThumbnailFilePath()
{
    QString noDirectory;
    convertPaths(root, noDirectory, stripThumbnailDir);
}

void VLMC_BookmarksSetting::addThumbnailFilePath(QString *dir)
{
    if (dir) {
        convertPaths(root, *dir, prependThumbnailDir);
    }
}

// Like addThumbnailFilePath() and then getLastNumber(), in one walk, which waits for the memory of
// the whole tree only once.
int VLMC_BookmarksSetting::loadThumbnailFilePath(QString &dir)
{
    int last = 0;
    withEachThumbnail(root, [&](VLMC_XMLNode *thumbnail) {
        convertPath(thumbnail, dir, prependThumbnailDir);
        last = qMax(last, thumbnailNumber(pathIn(thumbnail)));
    });
    return reported(last);
}
