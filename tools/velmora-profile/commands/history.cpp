// history: visit.xml. Listed and exported as the file has it, written through the store.

#include "bookmarks/HistoryElements_p.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "text/TimeText_p.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/commands/Removal.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Stores.h"

namespace
{
using namespace profile;

VLMC_HistorySetting &store() { return *VLMC_HistorySetting::getInstance(); }

// A load parses every date and a save writes it anew: what does not parse is gone then.
QList<Loss> lossesOfLoading(const Document &document)
{
    QList<Loss> losses;
    for (VLMC_XMLNode *const entry : document.children()) {
        const QString time = fieldText(entry, vlm::history::kDateTime);
        if (!time.isEmpty() && !vlm::timeOfText(time, vlm::ToMinute).isValid()) {
            losses.append({fieldText(entry, vlm::history::kUrl),
                           text("its date '%1' does not parse and is written empty").arg(time)});
        }
    }
    return losses;
}

// Done when the store holds the document and may replace it.
int load(const Call &call)
{
    return loadStore(History) == Done
               ? tellLosses(call, lossesOfLoading(Document(History, text(kProfileFolder))))
               : int(Failed);
}

struct Visit {
    VLMC_XMLNode *entry;
    qint64 time;
};

// The store's order, which is the ids' too, whatever order the file has: latest first, equal ones
// as they stand, dates that do not parse last. Another order than the store's would have commands
// take one visit for another.
bool isLater(const Visit &one, const Visit &other) { return one.time > other.time; }

QList<VLMC_XMLNode *> sorted(const Document &document)
{
    vlm::ClockOrder clock;
    QList<Visit> visits;
    for (VLMC_XMLNode *const entry : document.children()) {
        visits.append({entry, clock.of(fieldText(entry, vlm::history::kDateTime))});
    }
    std::stable_sort(visits.begin(), visits.end(), isLater);
    QList<VLMC_XMLNode *> entries;
    for (const Visit &visit : qAsConst(visits)) {
        entries.append(visit.entry);
    }
    return entries;
}

// The visits, or those of one page when a URL is given.
int sayVisits(const Call &call, const QString *url)
{
    const Document document(History, text(kProfileFolder));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    const QList<VLMC_XMLNode *> entries = sorted(document);
    Listing listing({{"id", "Id"}, {"visited", "Visited"}, {"title", "Title"}, {"url", "URL"}});
    for (int i = 0; i < entries.size(); ++i) {
        VLMC_XMLNode *const entry = entries.at(i);
        if (!url || fieldText(entry, vlm::history::kUrl) == *url) {
            listing.add({i, fieldText(entry, vlm::history::kDateTime),
                         fieldText(entry, vlm::history::kTitle),
                         fieldText(entry, vlm::history::kUrl)});
        }
    }
    const bool isFound = !url || !listing.isEmpty();
    if (isFound || call.has("json")) {
        listing.say(call.has("json"));
    }
    return isFound ? Done : Differs;
}

bool readTime(const Call &call, QDateTime *time)
{
    *time = QDateTime::currentDateTime();
    if (!call.has("time")) {
        return true;
    }
    *time = vlm::timeOfText(call.option("time"), vlm::ToMinute);
    if (!time->isValid()) {
        warn(text("--time takes a time like 2026/01/31 09:05, not '%1'").arg(call.option("time")));
    }
    return time->isValid();
}

int listHistory(const Call &call) { return sayVisits(call, nullptr); }

int findHistory(const Call &call) { return sayVisits(call, &call.operands.at(0)); }

int addHistory(const Call &call)
{
    VLMS_History visit;
    visit.url = call.operands.at(0);
    visit.title = call.operands.value(1);
    if (!readTime(call, &visit.dateTime) || load(call) != Done) {
        return Failed;
    }
    if (!isKept(visit.url) || !isKept(visit.title)) {
        return fail(
            text("this visit has characters that the file cannot hold; nothing was changed"));
    }
    VLMS_History oldest;
    if (store().getXMLNodeCnt() >= kMaxEntries && store().getHistory(kMaxEntries - 1, &oldest)) {
        sayLosses({{oldest.url, text("the oldest of %1 makes room").arg(kMaxEntries)}});
    }
    store().updateHistory(&visit);
    store().sortHistory();
    return saveStore(History);
}

int removeHistory(const Call &call)
{
    return load(call) == Done
               ? removeEntries(call, History, [](int id) { store().deleteHistory(id); })
               : int(Failed);
}

int clearHistory(const Call &)
{
    // What stands behind a damage, a repair can still get back.
    if (refuseToRead(Document(History, text(kProfileFolder))) != Done) {
        return Failed;
    }
    QString directory = text(kProfileFolder);
    store().loadHistory(&directory, kMaxEntries);
    store().deleteAllSetting();
    return saveStore(History);
}

int exportHistory(const Call &call)
{
    const Document document(History, text(kProfileFolder));
    const QString format = call.has("format") ? call.option("format") : text("csv");
    if (format != text("csv") && format != text("json")) {
        return fail(text("--format takes csv or json, not '%1'").arg(format));
    }
    if (refuseToRead(document) != Done) {
        return Failed;
    }
    QList<VisitRecord> visits;
    const QList<VLMC_XMLNode *> entries = sorted(document);
    for (VLMC_XMLNode *const entry : entries) {
        visits.append({fieldText(entry, vlm::history::kTitle), fieldText(entry, vlm::history::kUrl),
                       fieldText(entry, vlm::history::kDateTime)});
    }
    const QByteArray content =
        format == text("json") ? writeHistoryJson(visits) : writeHistoryCsv(visits);
    return writeFile(call.path(call.operands.at(0)), content) ? Done : Failed;
}
} // namespace

namespace profile
{
QList<Command> historyCommands()
{
    return {
        {"history", "list", "DIR", 0, 0, "json", "all visits", Reads, listHistory},
        {"history", "find", "DIR URL", 1, 1, "json", "the visits of one page", Reads, findHistory},
        {"history", "add", "DIR URL [TITLE]", 1, 2, "time strict", "add a visit", Writes,
         addHistory},
        {"history", "remove", "DIR ID...", 1, kMaxEntries, "strict", "remove visits", Writes,
         removeHistory},
        {"history", "clear", "DIR", 0, 0, "", "remove all visits", Writes, clearHistory},
        {"history", "export", "DIR FILE", 1, 1, "format", "write the visits (--format csv or json)",
         Reads, exportHistory},
    };
}
} // namespace profile
