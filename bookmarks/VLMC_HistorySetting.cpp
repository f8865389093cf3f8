#include "bookmarks/VLMC_HistorySetting.h"

#include "core/Entries_p.h"
#include "core/Identifier_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Refused_p.h"
#include "core/TimeText_p.h"
#include "core/Utf8_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QVector>

#include <algorithm>
#include <limits>
#include <typeinfo>

using namespace vlm;

namespace
{
const char kFileName[] = "visit.xml";
const char kRoot[] = "history";
const char kVisit[] = "pageInfo";
const char kTitle[] = "title";
const char kUrl[] = "url";
const char kDateTime[] = "dateTime";
const char kId[] = "id";

// A visit with its place in time, so that each text is parsed and converted once for the sort.
struct DatedVisit {
    VLMS_History visit;
    qint64 moment;
};

bool isLater(const DatedVisit &one, const DatedVisit &other) { return one.moment > other.moment; }

// Milliseconds since the epoch. Invalid times are older than every valid one and all the same age;
// QDateTime's own order of them depends on Qt's version.
qint64 momentOf(const QDateTime &time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

// Writes the text of the parent's child of this name, if there is one.
void readText(VLMC_XMLNode *parent, const char *name, QString *text)
{
    VLMC_XMLNode *const child = childNamed(parent, name);
    if (child) {
        *text = child->getText();
    }
}

void readVisit(VLMC_XMLNode *entry, VLMS_History *visit)
{
    readText(entry, kTitle, &visit->title);
    readText(entry, kUrl, &visit->url);
    VLMC_XMLNode *const time = childNamed(entry, kDateTime);
    if (time) {
        visit->dateTime = timeOfText(time->getText(), ToMinute);
    }
}

void changeText(VLMC_XMLNode *parent, const char *name, QString text)
{
    VLMC_XMLNode *const child = childNamed(parent, name);
    if (child) {
        child->setText(text);
    }
}

void logRead() { VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::getHistory]"); }

// What a search for each id from 0 up to the number of children would find, in one pass.
QVector<VLMC_XMLNode *> entriesById(VLMC_XMLSetting &store)
{
    QVector<VLMC_XMLNode *> entries(store.getXMLNodeCnt(), nullptr);
    VLMC_XMLNode *const root = store.getXMLRootNode();
    if (!root) {
        return entries;
    }
    const QString attributeName = QEXC_TextCodec::fromSJIS(kId);
    const QList<VLMC_XMLNode *> &children = root->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        int id = 0;
        if (child && readIdentifier(child->getAttribute(), attributeName, &id) && id >= 0
            && id < entries.size() && !entries.at(id)) {
            entries[id] = child;
        }
    }
    return entries;
}

// Logs as one getHistory per id would.
QVector<DatedVisit> readVisits(VLMC_XMLSetting &store)
{
    const QVector<VLMC_XMLNode *> entries = entriesById(store);
    QVector<DatedVisit> visits;
    visits.reserve(entries.size());
    for (VLMC_XMLNode *const entry : entries) {
        logRead();
        if (!entry) {
            continue;
        }
        DatedVisit dated;
        readVisit(entry, &dated.visit);
        dated.moment = momentOf(dated.visit.dateTime);
        visits.append(dated);
    }
    return visits;
}

// Adds the visit in front of the others, without an id. Null when no node results; without a root
// the node belongs to the caller.
VLMC_XMLNode *addVisit(VLMC_XMLSetting &store, const VLMS_History &visit)
{
    VLMC_XMLNode *const entry =
        addElement(store, store.getXMLRootNode(), kVisit, QString(), PlainText, AtFront);
    if (!entry) {
        return nullptr;
    }
    addElement(store, entry, kTitle, visit.title, PlainText, AtEnd);
    addElement(store, entry, kUrl, visit.url, PlainText, AtEnd);
    addElement(store, entry, kDateTime, textOfTime(visit.dateTime, ToMinute), PlainText, AtEnd);
    return entry;
}
// One setHistory of a sort without the renumbering, at what becomes this index. Only the visits
// behind the last number need theirs here: they keep the last one, which they had before they were
// pushed behind it.
void addSorted(VLMC_XMLSetting &store, const VLMS_History &visit, int index)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
    VLMC_XMLNode *const entry = addVisit(store, visit);
    if (entry && index >= kMaxNumbered) {
        QXmlStreamAttributes attributes = oneAttribute(kId, identifierText(kMaxNumbered - 1));
        entry->setAttribute(attributes);
    }
}
} // namespace

VLMC_HistorySetting *VLMC_HistorySetting::getInstance()
{
    static VLMC_HistorySetting instance;
    return &instance;
}

VLMC_HistorySetting::VLMC_HistorySetting() : loadMax(0) {}

void VLMC_HistorySetting::loadHistory(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::loadHistory] start");
    if (refused(isBlank(dir), "[VLMC_HistorySetting::loadHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::loadHistory] Error load_max:%d", max)) {
        return;
    }
    loadMax = max;
    loadEntries(*this, *dir, kFileName);
    sortHistory();
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::loadHistory] end");
}

// The message about max says saveAuthInfo; log readers know it so.
void VLMC_HistorySetting::saveHistory(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::saveHistory] start");
    if (refused(isBlank(dir), "[VLMC_HistorySetting::saveHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::saveAuthInfo] Error save_max:%d", max)) {
        return;
    }
    nameRoot(*this, kRoot);
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::saveHistory] end");
}

int VLMC_HistorySetting::getHistoryCnt() { return countEntries(*this, kVisit); }

bool VLMC_HistorySetting::getHistory(int id, VLMS_History *out)
{
    logRead();
    VLMC_XMLNode *const entry = entryById(*this, id);
    if (!out || !entry) {
        return false;
    }
    readVisit(entry, out);
    return true;
}

// Logs as one getHistory per id would, up to the one that matches. An entry without a URL is taken
// to have the one before it, the first to have an empty one: all are read into the same record.
int VLMC_HistorySetting::getHistoryIndex(QString &url)
{
    const int count = getHistoryCnt();
    const QVector<VLMC_XMLNode *> entries = entriesById(*this);
    QString entryUrl;
    for (int id = 0; id < count; ++id) {
        logRead();
        VLMC_XMLNode *const entry = entries.value(id);
        readText(entry, kUrl, &entryUrl);
        if (entry && entryUrl == url) {
            return id;
        }
    }
    return -1;
}

void VLMC_HistorySetting::setHistory(VLMS_History *entry)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
    if (!entry) {
        return;
    }
    VLMC_XMLNode *const added = addVisit(*this, *entry);
    if (!added) {
        return;
    }
    numberEntries(*this);
    releaseUnattached(added);
}

// One visit at most goes, also when a loaded file held more than the limit.
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
    VLMC_XMLNode *const visit = entryById(*this, id);
    changeText(visit, kTitle, entry.title);
    changeText(visit, kUrl, entry.url);
    changeText(visit, kDateTime, textOfTime(entry.dateTime, ToMinute));
}

void VLMC_HistorySetting::changeHistoryTitle(int id, QString &title)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::changeHistoryTitle]");
    changeText(entryById(*this, id), kTitle, title);
}

void VLMC_HistorySetting::deleteHistory(int id)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::deleteHistory] si_nodeNum:%d", id);
    removeEntry(*this, id);
}

void VLMC_HistorySetting::sortHistory()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::sortHistory]");
    if (!getXMLRootNode()) {
        return;
    }
    QVector<DatedVisit> visits = readVisits(*this);
    std::stable_sort(visits.begin(), visits.end(), isLater);
    deleteAllSetting();
    // Renumbering after each insertion can only be seen by a class that overrides the operation, or
    // where the root kept null children, each of which is logged every time.
    const bool isSeen = typeid(*this) != typeid(VLMC_HistorySetting) || getXMLNodeCnt() > 0;
    for (int i = int(visits.size()) - 1; i >= 0; --i) {
        if (isSeen) {
            setHistory(&visits[i].visit);
        } else {
            addSorted(*this, visits.at(i).visit, i);
        }
    }
    numberEntries(*this);
}

QString VLMC_HistorySetting::ClipString(const QString &text, int maxBytes)
{
    return clipped(text, maxBytes);
}
