// Runs one operation on a full profile for its instructions to be counted: operations <name>
// <folder>. Only what measured() does counts; it runs once before, so that nothing in it happens
// for the first time.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "core/VLMG_Debug.h"
#include "platform/libf.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <cstdio>
#include <cstring>
#include <malloc.h>

int LIBF_WriteSystemLog(int, int, int, const char *, unsigned short *) { return 0; }

namespace
{
const int kEntries = 999;

QString text(const char *latin1) { return QString::fromLatin1(latin1); }

VLMS_History visitTo(int page)
{
    VLMS_History visit;
    visit.title = text("Page %1 of a site with a title of usual length").arg(page);
    visit.url = text("http://www.example.com/some/path/to/page-%1.html?query=1").arg(page);
    visit.dateTime = QDateTime(QDate(2026, 1, 31), QTime(12, 0)).addSecs(60 * page);
    return visit;
}

struct Stores {
    QString folder;
    VLMC_HistorySetting history;
    VLMC_BookmarksSetting bookmarks;
    int lastThumbnail;
    int visited;
};

void fill(Stores &stores)
{
    stores.history.loadHistory(&stores.folder, kEntries);
    stores.bookmarks.loadBookmark(&stores.folder, kEntries, stores.lastThumbnail);
    for (int page = 0; page < kEntries; ++page) {
        VLMS_History visit = visitTo(page);
        stores.history.setHistory(&visit);
        VLMS_Bookmark bookmark;
        bookmark.title = visit.title;
        bookmark.url = visit.url;
        bookmark.thumbnailPath = text("%1.PNG").arg(page, 6, 10, QLatin1Char('0'));
        stores.bookmarks.setBookmark(&bookmark, 0);
    }
    stores.history.saveHistory(&stores.folder, kEntries);
    stores.bookmarks.saveBookmark(&stores.folder, kEntries);
    stores.history.loadHistory(&stores.folder, kEntries);
    stores.bookmarks.loadBookmark(&stores.folder, kEntries, stores.lastThumbnail);
    stores.visited = kEntries;
}

bool load(Stores &stores)
{
    stores.history.loadHistory(&stores.folder, kEntries);
    return stores.history.getXMLNodeCnt() == kEntries;
}

bool save(Stores &stores)
{
    stores.history.saveHistory(&stores.folder, kEntries);
    return true;
}

bool visit(Stores &stores)
{
    VLMS_History entry = visitTo(stores.visited++);
    const bool isNew = stores.history.getHistoryIndex(entry.url) == -1;
    stores.history.updateHistory(&entry);
    return isNew && stores.history.getXMLNodeCnt() == kEntries;
}

bool list(Stores &stores)
{
    int listed = 0;
    const int visits = stores.history.getHistoryCnt();
    for (int id = 0; id < visits; ++id) {
        VLMS_History entry;
        listed += stores.history.getHistory(id, &entry);
    }
    const int bookmarks = stores.bookmarks.getBookmarkCnt();
    for (int id = 0; id < bookmarks; ++id) {
        VLMS_Bookmark entry;
        listed += stores.bookmarks.getBookmark(id, &entry);
    }
    return listed == 2 * kEntries;
}

struct Operation {
    const char *name;
    bool (*run)(Stores &stores);
};

const Operation kOperations[] = {{"load", load}, {"save", save}, {"visit", visit}, {"list", list}};

const Operation *operationNamed(const char *name)
{
    for (const Operation &operation : kOperations) {
        if (strcmp(operation.name, name) == 0) {
            return &operation;
        }
    }
    return nullptr;
}
} // namespace

extern "C" __attribute__((noinline, visibility("default"))) bool
measured(const Operation *operation, Stores *stores)
{
    return operation->run(*stores);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const Operation *const operation = argc == 3 ? operationNamed(argv[1]) : nullptr;
    if (!operation) {
        fprintf(stderr, "usage: operations load|save|visit|list FOLDER/\n");
        return 2;
    }
    g_uc_SystemLogLevel = 0;
    Stores stores = {};
    stores.folder = QString::fromLocal8Bit(argv[2]);
    fill(stores);
    operation->run(stores);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Otherwise the allocator tidies up what was freed so far at some moment of its own.
    malloc_trim(0);
    if (!measured(operation, &stores)) {
        fprintf(stderr, "operations: %s did not do its work\n", operation->name);
        return 1;
    }
    return 0;
}
