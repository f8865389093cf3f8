#include "bookmarks/VLMC_BookmarksSetting.h"

#include "bookmarks/BookmarkElements_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Refused_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "text/Utf8_p.h"

using namespace vlm;
using namespace vlm::bookmarks;

namespace
{
const char kBlankPage[] = "about:blank";

// The children of a bookmark, as getBookmarkChildNode() takes them.
const char TitleChild = 0;
const char UrlChild = 1;
const char ThumbnailChild = 2;
} // namespace

VLMC_BookmarksSetting *VLMC_BookmarksSetting::getInstance()
{
    static VLMC_BookmarksSetting instance;
    return &instance;
}

VLMC_BookmarksSetting::VLMC_BookmarksSetting() : loadMax(0) {}

void VLMC_BookmarksSetting::loadBookmark(QString *dir, int max, int &lastNumber)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::loadBookmark] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_BookmarksSetting::loadBookmark] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_BookmarksSetting::loadBookmark] Error load_max:%d", max)) {
        return;
    }
    loadMax = max;
    loadEntries(*this, *dir, kFileName);
    lastNumber = loadThumbnailFilePath(*dir);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::loadBookmark] end");
}

void VLMC_BookmarksSetting::saveBookmark(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::saveBookmark] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_BookmarksSetting::saveBookmark] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_BookmarksSetting::saveBookmark] Error save_max:%d", max)) {
        return;
    }
    nameRoot(*this, kRoot);
    removeThumbnailFilePath();
    saveFile(*this, *dir, kFileName);
    addThumbnailFilePath(dir);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::saveBookmark] end");
}

int VLMC_BookmarksSetting::getBookmarkCnt() { return countEntries(*this, kEntry); }

bool VLMC_BookmarksSetting::getBookmark(int id, VLMS_Bookmark *out)
{
    if (!out || !entryById(*this, id)) {
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

bool VLMC_BookmarksSetting::setBookmark(VLMS_Bookmark *bookmark, char atFront)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::setBookmark]");
    if (!bookmark || !fitsUtf8(bookmark->url, kMaxUrlBytes)
        || !fitsUtf8(bookmark->thumbnailPath, kMaxThumbnailPathBytes)) {
        return false;
    }
    VLMC_XMLNode *const entry =
        addElement(*this, getXMLRootNode(), kEntry, QString(), PlainText, atFront);
    if (!entry) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_BookmarksSetting::setBookmark] Failed to new VLMC_XMLNode.");
        return false;
    }
    const QString title = fitsUtf8(bookmark->title, kMaxTitleBytes)
                              ? bookmark->title
                              : ClipString(bookmark->title, kMaxTitleBytes);
    addElement(*this, entry, kUrl, bookmark->url, PlainText, AtEnd);
    addElement(*this, entry, kTitle, title, PlainText, AtEnd);
    addElement(*this, entry, kThumbnail, bookmark->thumbnailPath, PlainText, AtEnd);
    numberEntries(*this);
    releaseUnattached(entry);
    return true;
}

void VLMC_BookmarksSetting::deleteBookmark(int id)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BookmarksSetting::deleteBookmark] si_nodeNum:%d", id);
    removeEntry(*this, id);
}

// A title that is too long is a success that fills in nothing: callers rely on it and show their
// own, usually empty, text.
bool VLMC_BookmarksSetting::getBookmarkTitle(int id, QString *out)
{
    VLMC_XMLNode *const title = getBookmarkChildNode(id, TitleChild);
    if (!out || !title) {
        return false;
    }
    if (fitsUtf8(title->getText(), kMaxTitleBytes)) {
        *out = title->getText();
    }
    return true;
}

// Never clips, unlike setBookmark.
bool VLMC_BookmarksSetting::setBookmarkTitle(int id, QString *title)
{
    VLMC_XMLNode *const node = getBookmarkChildNode(id, TitleChild);
    if (!title || !node) {
        return false;
    }
    node->setText(*title);
    return true;
}

bool VLMC_BookmarksSetting::getBookmarkURL(int id, QString *out)
{
    VLMC_XMLNode *const url = getBookmarkChildNode(id, UrlChild);
    if (!out || !url) {
        return false;
    }
    *out = fitsUtf8(url->getText(), kMaxUrlBytes) ? url->getText()
                                                  : QEXC_TextCodec::fromSJIS(kBlankPage);
    return true;
}

bool VLMC_BookmarksSetting::setBookmarkURL(int id, QString *url)
{
    if (!url || !fitsUtf8(*url, kMaxUrlBytes)) {
        return false;
    }
    VLMC_XMLNode *const node = getBookmarkChildNode(id, UrlChild);
    if (!node) {
        return false;
    }
    node->setText(*url);
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

VLMC_XMLNode *VLMC_BookmarksSetting::getBookmarkChildNode(int id, char which)
{
    VLMC_XMLNode *const entry = entryById(*this, id);
    switch (which) {
    case TitleChild:
        return childNamed(entry, kTitle);
    case UrlChild:
        return childNamed(entry, kUrl);
    case ThumbnailChild:
        return childNamed(entry, kThumbnail);
    default:
        return nullptr;
    }
}

QString VLMC_BookmarksSetting::ClipString(const QString &text, int maxBytes)
{
    return clipped(text, maxBytes);
}
