// The thumbnails of the bookmarks: their files, their numbers, and the paths to them.

#include "bookmarks/VLMC_BookmarksSetting.h"

#include "bookmarks/BookmarkElements_p.h"
#include "bookmarks/RegularFile_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Utf8_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QFile>
#include <QtGui/QImage>

using namespace vlm;

namespace
{
const char kThumbnailDirectory[] = "thumbnail/";
const char kSuffix[] = ".PNG";
const char kFormat[] = "PNG";
const int kDefaultQuality = -1;

const int kNumberDigits = 6;
// Characters of a file name with that many digits; a longer name loses its first ones.
const int kNameChars = 10;
const int kSuffixChars = 4;

QString thumbnailName(int number)
{
    return QString::fromLatin1("%1").arg(number, kNumberDigits, 10, QLatin1Char('0'))
           + QEXC_TextCodec::fromSJIS(kSuffix);
}

// 0 for a name that holds no number.
int thumbnailNumber(const QString &path)
{
    const int start = qMax(0, int(path.size()) - kNameChars);
    return path.mid(start, qMax(0, int(path.size()) - kSuffixChars - start)).toInt();
}

QString stripThumbnailDir(QString &path, QString &) { return path.right(kNameChars); }

QString prependThumbnailDir(QString &path, QString &dir)
{
    QString whole;
    whole.reserve(dir.size() + int(sizeof kThumbnailDirectory) + path.size());
    whole += dir;
    whole += QLatin1String(kThumbnailDirectory);
    whole += path;
    return whole;
}

// Asked for at every step of a walk. Never destroyed: stores may be used while the process exits.
const QString &bookmarkName()
{
    static const QString *const name = new QString(elementName(kBookmark));
    return *name;
}
} // namespace

bool VLMC_BookmarksSetting::setThumbnail(QImage *image, QString *path, int &number)
{
    if (!image || !path) {
        return false;
    }
    // Unsigned, so that the highest number has a next one as well.
    number = int(unsigned(number) + 1u);
    *path += thumbnailName(number);
    return isFileOrFree(*path) && image->save(*path, kFormat, kDefaultQuality);
}

// Loads into an image of its own: a load that fails would take the caller's away on some versions
// of Qt.
bool VLMC_BookmarksSetting::getThumbnail(QImage *image, QString *path)
{
    if (!image || !path || !isFileOrFree(*path)) {
        return false;
    }
    QImage loaded;
    if (!loaded.load(*path, kFormat)) {
        return false;
    }
    *image = loaded;
    return true;
}

bool VLMC_BookmarksSetting::deleteThumbnail(QString *path) { return path && QFile::remove(*path); }

int VLMC_BookmarksSetting::getLastNumber()
{
    const int count = getXMLNodeCnt();
    int last = 0;
    for (int i = 0; i < count; ++i) {
        VLMC_XMLNode *const thumbnail = getThumbNode(i);
        if (!thumbnail) {
            break;
        }
        last = qMax(last, thumbnailNumber(getThumbFilePath(thumbnail)));
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::getLastNumber] last number:%d", last);
    return last;
}

VLMC_XMLNode *VLMC_BookmarksSetting::getThumbNode(int &index)
{
    if (!root) {
        return nullptr;
    }
    index = qMax(index, 0);
    QString name = bookmarkName();
    return childNamed(root->getChildByName(name, index), kThumbnail);
}

QString VLMC_BookmarksSetting::getThumbFilePath(VLMC_XMLNode *node)
{
    if (!node || !fitsUtf8(node->getText(), kMaxThumbnailPathBytes)) {
        return QString();
    }
    return node->getText();
}

bool VLMC_BookmarksSetting::setThumbFilePath(VLMC_XMLNode *node, QString &path)
{
    if (!node) {
        return false;
    }
    node->setText(path);
    return true;
}

bool VLMC_BookmarksSetting::getBookmarkThumbnailFilePath(int id, QString *out)
{
    VLMC_XMLNode *const thumbnail = getBookmarkChildNode(id, ThumbnailChild);
    if (!out || !thumbnail) {
        return false;
    }
    *out = getThumbFilePath(thumbnail);
    return true;
}

bool VLMC_BookmarksSetting::setBookmarkThumbnailFilePath(int id, QString *path)
{
    if (!path || !fitsUtf8(*path, kMaxThumbnailPathBytes)) {
        return false;
    }
    return setThumbFilePath(getBookmarkChildNode(id, ThumbnailChild), *path);
}

// Stops at the first bookmark without a thumbnail element, as getLastNumber does: later ones keep
// their paths. getThumbNode moves the position past elements that are no bookmarks.
void VLMC_BookmarksSetting::changeThumbFilePath(QString &dir,
                                                QString (*convert)(QString &path, QString &dir))
{
    if (!convert) {
        return;
    }
    const int count = getXMLNodeCnt();
    for (int i = 0; i < count; ++i) {
        VLMC_XMLNode *const thumbnail = getThumbNode(i);
        if (!thumbnail) {
            return;
        }
        QString path = getThumbFilePath(thumbnail);
        QString converted = convert(path, dir);
        setThumbFilePath(thumbnail, converted);
    }
}

void VLMC_BookmarksSetting::removeThumbnailFilePath()
{
    QString noDirectory;
    changeThumbFilePath(noDirectory, stripThumbnailDir);
}

void VLMC_BookmarksSetting::addThumbnailFilePath(QString *dir)
{
    if (dir) {
        changeThumbFilePath(*dir, prependThumbnailDir);
    }
}
