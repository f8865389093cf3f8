// bookmarks: bookmark.xml, and the bookmark files of other browsers.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/commands/Removal.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Stores.h"

namespace
{
using namespace profile;

using namespace vlm::bookmarks;

VLMC_BookmarksSetting &store() { return *VLMC_BookmarksSetting::getInstance(); }

// What has to be known before a bookmark is added: nothing for one that is refused as a whole.
struct Fitting {
    bool fits;
    QList<Loss> losses;
};

Fitting fit(const BookmarkRecord &bookmark, int count)
{
    const QString entry = bookmark.title.isEmpty() ? bookmark.url : bookmark.title;
    if (count >= kMaxEntries) {
        return {false, {{entry, text("the list already holds %1 entries").arg(kMaxEntries)}}};
    }
    if (utf8Bytes(bookmark.url) > kMaxUrlBytes) {
        return {false,
                {{entry, text("its URL has %1 bytes, over the limit of %2")
                             .arg(utf8Bytes(bookmark.url))
                             .arg(kMaxUrlBytes)}}};
    }
    Fitting fitting = {true, QList<Loss>()};
    if (utf8Bytes(bookmark.title) > kMaxTitleBytes) {
        fitting.losses.append({entry, text("its title of %1 bytes is cut to %2")
                                          .arg(utf8Bytes(bookmark.title))
                                          .arg(kMaxTitleBytes)});
    }
    if (!isKept(bookmark.title) || !isKept(bookmark.url)) {
        fitting.losses.append({entry, text("it has characters that the file cannot hold")});
    }
    if (!bookmark.folders.isEmpty()) {
        fitting.losses.append(
            {entry, text("its folder %1").arg(bookmark.folders.join(text(" / ")))});
    }
    return fitting;
}

void add(const BookmarkRecord &bookmark, char atFront)
{
    VLMS_Bookmark record;
    record.title = bookmark.title;
    record.url = bookmark.url;
    store().setBookmark(&record, atFront);
}

QList<BookmarkRecord> recordsOf(const Document &document)
{
    QList<BookmarkRecord> records;
    for (VLMC_XMLNode *const entry : document.children()) {
        records.append({fieldText(entry, kTitle), fieldText(entry, kUrl), QStringList()});
    }
    return records;
}

BookmarkImport read(const QByteArray &content)
{
    const Deadline deadline;
    return readBookmarks(content);
}

int sayImported(const Call &call, const BookmarkImport &import, int added,
                const QList<Loss> &losses)
{
    if (call.has("json")) {
        sayJson(QJsonObject{{text("format"), import.format},
                            {text("added"), added},
                            {text("losses"), toJson(losses)}});
        return Done;
    }
    say(text("%1: %2 %3 added, %4")
            .arg(import.format, counted(added, "bookmark", "bookmarks"), imported(call, added),
                 counted(losses.size(), "loss", "losses")));
    return Done;
}

// Adds what fits to the list in memory; the losses tell of the rest.
int addAll(const QList<BookmarkRecord> &bookmarks, QList<Loss> *losses)
{
    Progress progress("bookmark", bookmarks.size());
    int added = 0;
    for (const BookmarkRecord &bookmark : bookmarks) {
        const Fitting fitting = fit(bookmark, store().getXMLNodeCnt());
        *losses += fitting.losses;
        if (fitting.fits) {
            add(bookmark, 0);
            ++added;
        }
        progress.step();
    }
    return added;
}

int listBookmarks(const Call &call)
{
    const Document document(Bookmarks, text(kProfileFolder));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    Listing listing({{"id", "Id"}, {"title", "Title"}, {"url", "URL"}, {"thumbnail", "Thumbnail"}});
    for (VLMC_XMLNode *const entry : document.children()) {
        listing.add({listing.json().size(), fieldText(entry, kTitle), fieldText(entry, kUrl),
                     thumbnailName(fieldText(entry, kThumbnail))});
    }
    return listing.say(call.has("json"));
}

int addBookmark(const Call &call)
{
    const BookmarkRecord bookmark = {call.operands.value(1), call.operands.at(0), QStringList()};
    if (loadStore(Bookmarks) != Done) {
        return Failed;
    }
    const Fitting fitting = fit(bookmark, store().getXMLNodeCnt());
    if (!fitting.fits) {
        return fail(
            text("'%1': %2; nothing was changed").arg(bookmark.url, fitting.losses.at(0).reason));
    }
    if (tellLosses(call, fitting.losses) != Done) {
        return Failed;
    }
    add(bookmark, call.has("front") ? 1 : 0);
    return saveStore(Bookmarks);
}

int removeBookmark(const Call &call)
{
    return loadStore(Bookmarks) == Done
               ? removeEntries(call, Bookmarks, [](int id) { store().deleteBookmark(id); })
               : int(Failed);
}

int importBookmarks(const Call &call)
{
    QByteArray content;
    if (!readFile(call.path(call.operands.at(0)), &content, kMaxImportBytes)) {
        return Failed;
    }
    const BookmarkImport import = read(content);
    if (!import.error.isEmpty()) {
        return fail(text("'%1': %2; nothing was changed").arg(call.operands.at(0), import.error));
    }
    if (loadStore(Bookmarks) != Done) {
        return Failed;
    }
    QList<Loss> losses = import.losses;
    const int added = addAll(import.bookmarks, &losses);
    if (tellLosses(call, losses) != Done
        || (!call.has("dry-run") && saveStore(Bookmarks) != Done)) {
        return Failed;
    }
    return sayImported(call, import, added, losses);
}

int exportBookmarks(const Call &call)
{
    const Document document(Bookmarks, text(kProfileFolder));
    const QString format = call.has("format") ? call.option("format") : text("netscape");
    if (format != text("netscape") && format != text("xbel")) {
        return fail(text("--format takes netscape or xbel, not '%1'").arg(format));
    }
    if (refuseToRead(document) != Done) {
        return Failed;
    }
    QList<Loss> losses;
    const QByteArray content = format == text("xbel")
                                   ? writeXbel(recordsOf(document), &losses)
                                   : writeNetscapeBookmarks(recordsOf(document), &losses);
    return tellLosses(call, losses) == Done && writeFile(call.path(call.operands.at(0)), content)
               ? Done
               : Failed;
}
} // namespace

namespace profile
{
QList<Command> bookmarksCommands()
{
    return {
        {"bookmarks", "list", "DIR", 0, 0, "json", "all bookmarks", Reads, listBookmarks},
        {"bookmarks", "add", "DIR URL [TITLE]", 1, 2, "front strict", "add a bookmark", Writes,
         addBookmark},
        {"bookmarks", "remove", "DIR ID...", 1, kMaxEntries, "", "remove bookmarks", Writes,
         removeBookmark},
        {"bookmarks", "import", "DIR FILE", 1, 1, "strict dry-run json",
         "add the bookmarks of a Netscape HTML or XBEL file", Writes, importBookmarks},
        {"bookmarks", "export", "DIR FILE", 1, 1, "format strict",
         "write the bookmarks (--format netscape or xbel)", Reads, exportBookmarks},
    };
}
} // namespace profile
