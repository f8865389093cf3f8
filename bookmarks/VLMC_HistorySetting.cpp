#include "bookmarks/VLMC_HistorySetting.h"

#include "bookmarks/HistoryElements_p.h"
#include "bookmarks/HistoryEntries_p.h"
#include "core/Entries_p.h"
#include "core/Erasures_p.h"
#include "core/NodeView_p.h"
#include "core/Numbering_p.h"
#include "core/Refused_p.h"
#include "core/VLMG_Debug.h"
#include "text/TimeText_p.h"
#include "text/Utf8_p.h"

#include <QtCore/QVector>

#include <cstring>

using namespace vlm;
using namespace vlm::history;

namespace
{
void setText(VLMC_XMLNode *node, const QString &text)
{
    if (node) {
        QString copy = text;
        node->setText(copy);
    }
}

// A line in the log for each id that is looked at, as from getHistory.
void logReads(int ids)
{
    for (int i = 0; i < ids; ++i) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::getHistory]");
    }
}

// The visits that ids lead to.
QVector<Visit> readVisits(VLMC_HistorySetting &store)
{
    const QList<VLMC_XMLNode *> entries = entriesById(store, store.getXMLNodeCnt());
    logReads(int(entries.size()));
    return visitsNewestFirst(entries);
}

// The table of the object's virtual operations, which an object begins with.
const void *operationsOf(const VLMC_HistorySetting &store)
{
    const void *table = nullptr;
    memcpy(&table, static_cast<const void *>(&store), sizeof table);
    return table;
}

// True when the store's class is VLMC_HistorySetting itself, which overrides nothing. Its type
// would tell as well, but a derived class that was compiled without RTTI has none. Both objects
// have the table from the library's own constructor, whatever copies of it programs hold. The one
// to compare with is never destroyed: its end would stand in the log.
bool overridesNothing(const VLMC_HistorySetting &store)
{
    static const VLMC_HistorySetting *const plain = new VLMC_HistorySetting;
    return operationsOf(store) == operationsOf(*plain);
}
} // namespace

bool VLMS_History::operator<(const VLMS_History &other) const { return other.dateTime < dateTime; }

VLMC_HistorySetting *VLMC_HistorySetting::getInstance()
{
    static VLMC_HistorySetting instance;
    return &instance;
}

VLMC_HistorySetting::VLMC_HistorySetting() : loadMax(0) {}

void VLMC_HistorySetting::loadHistory(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::loadHistory] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_HistorySetting::loadHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::loadHistory] Error load_max:%d", max)) {
        return;
    }
    loadMax = max;
    loadEntries(*this, *dir, kFileName);
    // Nobody has seen the entries yet, so they need not be rebuilt to be sorted. Only a derived
    // class could tell the difference, by the virtual operations that rebuilding calls.
    if (overridesNothing(*this)) {
        sortLoadedEntries();
    } else {
        sortHistory();
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::loadHistory] end");
}

void VLMC_HistorySetting::saveHistory(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::saveHistory] start");
    // The second message names another store; log readers know it that way.
    if (refused(isNullOrEmpty(dir), "[VLMC_HistorySetting::saveHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::saveAuthInfo] Error save_max:%d", max)) {
        return;
    }
    nameRoot(*this, kRoot);
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::saveHistory] end");
}

int VLMC_HistorySetting::getHistoryCnt() { return countEntries(*this, kEntry); }

bool VLMC_HistorySetting::getHistory(int id, VLMS_History *out)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::getHistory]");
    VLMC_XMLNode *const entry = out ? entryById(*this, id) : nullptr;
    if (!entry) {
        return false;
    }
    if (VLMC_XMLNode *const title = childNamed(entry, kTitle)) {
        out->title = title->getText();
    }
    if (VLMC_XMLNode *const url = childNamed(entry, kUrl)) {
        out->url = url->getText();
    }
    if (VLMC_XMLNode *const dateTime = childNamed(entry, kDateTime)) {
        out->dateTime = timeOfText(dateTime->getText(), ToMinute);
    }
    return true;
}

// Like getHistory for one id after the other, with a line in the log for each, but without a search
// for each, and without reading what is not compared.
int VLMC_HistorySetting::getHistoryIndex(QString &url)
{
    const QList<VLMC_XMLNode *> entries = entriesById(*this, getHistoryCnt());
    const int index = indexOfUrl(entries, url);
    logReads(index < 0 ? int(entries.size()) : index + 1);
    return index;
}

void VLMC_HistorySetting::setHistory(VLMS_History *entry)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
    if (!entry) {
        return;
    }
    VLMC_XMLNode *const added =
        addVisit(*this, {entry->title, entry->url, textOfTime(entry->dateTime, ToMinute)}, AtFront);
    if (added) {
        numberEntries(*this);
        releaseUnattached(added);
    }
}

void VLMC_HistorySetting::updateHistory(VLMS_History *entry)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::updateHistory]");
    if (getXMLNodeCnt() >= loadMax) {
        deleteHistory(loadMax - 1);
    }
    setHistory(entry);
}

void VLMC_HistorySetting::changeHistory(int id, VLMS_History &entry)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::changeHistory]");
    VLMC_XMLNode *const changed = entryById(*this, id);
    setText(childNamed(changed, kTitle), entry.title);
    setText(childNamed(changed, kUrl), entry.url);
    setText(childNamed(changed, kDateTime), textOfTime(entry.dateTime, ToMinute));
}

void VLMC_HistorySetting::changeHistoryTitle(int id, QString &title)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::changeHistoryTitle]");
    setText(childNamed(entryById(*this, id), kTitle), title);
}

void VLMC_HistorySetting::deleteHistory(int id)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::deleteHistory] si_nodeNum:%d", id);
    removeEntry(*this, id);
}

// Like setHistory for one visit after the other, the last one first, with its line in the log.
// Numbering after each is visible only to a class that overrides a virtual operation, or where the
// root kept null children: each numbering reports those.
void VLMC_HistorySetting::sortHistory()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::sortHistory]");
    if (!root) {
        return;
    }
    const QVector<Texts> visits = textsOf(readVisits(*this));
    const NoErasure noErasure;
    deleteAllSetting();
    const bool isSeen = !overridesNothing(*this) || getXMLNodeCnt() > 0;
    for (int i = int(visits.size()) - 1; i >= 0; --i) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
        if (addVisit(*this, visits.at(i), AtFront) && isSeen) {
            numberEntries(*this);
        }
    }
    if (!isSeen) {
        numberPushedOut();
    }
    numberEntries(*this);
}

// Does what sortHistory does to entries that were just read, with the same lines in the log, but
// keeps every entry that is as setHistory would build it.
void VLMC_HistorySetting::sortLoadedEntries()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::sortHistory]");
    const QVector<Visit> visits = readVisits(*this);
    const QList<VLMC_XMLNode *> loaded = NodeView::takeChildren(*root);
    const NoErasure noErasure;
    deleteAllSetting();
    char place = AtEnd;
    for (const Visit &visit : visits) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
        if (isPlain(visit)) {
            root->addXMLNode(visit.entry, place);
        } else {
            addVisit(*this, textsOf(visit), place);
        }
    }
    numberPushedOut();
    numberEntries(*this);
    for (VLMC_XMLNode *const entry : loaded) {
        if (!entry->getXMLNodeParent()) {
            delete entry;
        }
    }
}

// As if the entries had been numbered after each insertion at the front: those that later ones
// pushed out of the numbered range still have its last number.
void VLMC_HistorySetting::numberPushedOut()
{
    const QList<VLMC_XMLNode *> &entries = NodeView::children(*root);
    for (int i = kMaxNumbered; i < entries.size(); ++i) {
        QXmlStreamAttributes last = numberSets(idName(), kMaxNumbered).at(kMaxNumbered - 1);
        entries.at(i)->setAttribute(last);
    }
}

QString VLMC_HistorySetting::ClipString(const QString &text, int maxBytes)
{
    return clipped(text, maxBytes);
}
