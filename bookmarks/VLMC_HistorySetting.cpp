#include "bookmarks/VLMC_HistorySetting.h"

#include "core/Entries_p.h"
#include "core/Identifier_p.h"
#include "core/NodeView_p.h"
#include "core/Refused_p.h"
#include "core/TimeText_p.h"
#include "core/Utf8_p.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QVector>

#include <algorithm>
#include <cstring>

using namespace vlm;

namespace
{
const char kFileName[] = "visit.xml";
const char kRoot[] = "history";
const char kPageInfo[] = "pageInfo";
const char kTitle[] = "title";
const char kUrl[] = "url";
const char kDateTime[] = "dateTime";

const int kEntriesAtOnce = 32;

QString textOf(VLMC_XMLNode *node) { return node ? node->getText() : QString(); }

void setText(VLMC_XMLNode *node, const QString &text)
{
    if (node) {
        QString copy = text;
        node->setText(copy);
    }
}

// True for an element of this name without attributes and children whose text, if any, is plain.
bool isPlainField(VLMC_XMLNode *node, const char *name)
{
    return NodeView::isNamed(*node, QLatin1String(name)) && node->getTextType() == PlainText
           && NodeView::children(*node).isEmpty() && NodeView::attributes(*node).isEmpty();
}

// True for an entry that setHistory would build just so, its id apart.
bool isPlainEntry(VLMC_XMLNode *entry, bool hasTime)
{
    const QList<VLMC_XMLNode *> &fields = NodeView::children(*entry);
    return NodeView::isNamed(*entry, QLatin1String(kPageInfo)) && entry->getText().isEmpty()
           && entry->getTextType() == PlainText && fields.size() == 3
           && isPlainField(fields.at(0), kTitle) && isPlainField(fields.at(1), kUrl)
           && isPlainField(fields.at(2), kDateTime)
           && (hasTime || fields.at(2)->getText().isEmpty());
}

// A stored visit and its place in time.
struct Visit {
    VLMC_XMLNode *entry;
    qint64 clock;
};

// What a stored visit is built of.
struct Texts {
    QString title;
    QString url;
    QString time;
};

// The visits that ids lead to. The log has a line for each id, as from getHistory.
QVector<Visit> visitsNewestFirst(VLMC_XMLSetting &store)
{
    const QList<VLMC_XMLNode *> entries = entriesById(store, store.getXMLNodeCnt());
    ClockOrder clock;
    QVector<Visit> visits;
    visits.reserve(int(entries.size()));
    for (VLMC_XMLNode *const entry : entries) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::getHistory]");
        if (entry) {
            visits.append({entry, clock.of(textOf(childNamed(entry, kDateTime)))});
        }
    }
    const auto newerFirst = [](const Visit &left, const Visit &right) {
        return left.clock > right.clock;
    };
    if (!std::is_sorted(visits.constBegin(), visits.constEnd(), newerFirst)) {
        std::stable_sort(visits.begin(), visits.end(), newerFirst);
    }
    return visits;
}

// A time that cannot be read is erased.
Texts textsOf(const Visit &visit)
{
    return {textOf(childNamed(visit.entry, kTitle)), textOf(childNamed(visit.entry, kUrl)),
            visit.clock == ClockOrder::NoTime ? QString()
                                              : textOf(childNamed(visit.entry, kDateTime))};
}

QVector<Texts> textsOf(const QVector<Visit> &visits)
{
    QVector<Texts> texts;
    texts.reserve(int(visits.size()));
    for (const Visit &visit : visits) {
        texts.append(textsOf(visit));
    }
    return texts;
}

// The first of the entries, some of which may be null, with this url, or -1. An entry without a url
// is compared by the url of the one before it. Looks for the fields of some entries before it looks
// at their texts: while the memory of one entry is waited for, the next ones can be asked for.
int indexOfUrl(const QList<VLMC_XMLNode *> &entries, const QString &url)
{
    const QString none = QString();
    const QString *compared = &none;
    VLMC_XMLNode *fields[kEntriesAtOnce];
    const int count = int(entries.size());
    for (int start = 0; start < count; start += kEntriesAtOnce) {
        const int end = qMin(start + kEntriesAtOnce, count);
        for (int i = start; i < end; ++i) {
            fields[i - start] = childNamed(entries.at(i), kUrl);
        }
        for (int i = start; i < end; ++i) {
            if (VLMC_XMLNode *const field = fields[i - start]) {
                compared = &field->getText();
            }
            if (entries.at(i) && *compared == url) {
                return i;
            }
        }
    }
    return -1;
}

// An entry at the front or at the end of the list; null when there is no node to be had.
VLMC_XMLNode *addVisit(VLMC_XMLSetting &store, const Texts &visit, char place)
{
    VLMC_XMLNode *const entry =
        addElement(store, store.getXMLRootNode(), kPageInfo, QString(), PlainText, place);
    if (!entry) {
        return nullptr;
    }
    addElement(store, entry, kTitle, visit.title, PlainText, AtEnd);
    addElement(store, entry, kUrl, visit.url, PlainText, AtEnd);
    addElement(store, entry, kDateTime, visit.time, PlainText, AtEnd);
    return entry;
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
    if (refused(isBlank(dir), "[VLMC_HistorySetting::loadHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::loadHistory] Error load_max:%d", max)) {
        return;
    }
    loadMax = max;
    loadEntries(*this, *dir, kFileName);
    // Nobody has seen the entries yet, so they need not be built anew to be put in order; only a
    // derived class could tell, by the virtual operations that building them calls.
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
    // The second message names another store; log readers know it so.
    if (refused(isBlank(dir), "[VLMC_HistorySetting::saveHistory] Path is NULL or empty.")
        || refused(max < 1, "[VLMC_HistorySetting::saveAuthInfo] Error save_max:%d", max)) {
        return;
    }
    nameRoot(*this, kRoot);
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::saveHistory] end");
}

int VLMC_HistorySetting::getHistoryCnt() { return countEntries(*this, kPageInfo); }

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

// As getHistory for one id after the other, with its line in the log for each, but without a search
// for each and without reading what is not compared.
int VLMC_HistorySetting::getHistoryIndex(QString &url)
{
    const QList<VLMC_XMLNode *> entries = entriesById(*this, getHistoryCnt());
    const int index = indexOfUrl(entries, url);
    const int lookedAt = index < 0 ? int(entries.size()) : index + 1;
    for (int i = 0; i < lookedAt; ++i) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::getHistory]");
    }
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

// As setHistory for one visit after the other, the last one first, its line in the log included. A
// numbering after each can only be seen by a class that overrides a virtual operation, or where the
// root kept null children: each numbering reports those.
void VLMC_HistorySetting::sortHistory()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::sortHistory]");
    if (!root) {
        return;
    }
    const QVector<Texts> visits = textsOf(visitsNewestFirst(*this));
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

// What sortHistory makes of entries that were just read, and the same lines in the log, but every
// entry that is as setHistory would build it stays in use.
void VLMC_HistorySetting::sortLoadedEntries()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::sortHistory]");
    const QVector<Visit> visits = visitsNewestFirst(*this);
    const QList<VLMC_XMLNode *> loaded = NodeView::takeChildren(*root);
    deleteAllSetting();
    char place = AtEnd;
    for (const Visit &visit : visits) {
        VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_HistorySetting::setHistory]");
        if (isPlainEntry(visit.entry, visit.clock != ClockOrder::NoTime)) {
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
// pushed out of the numbered range still carry its last number.
void VLMC_HistorySetting::numberPushedOut()
{
    const QList<VLMC_XMLNode *> &entries = NodeView::children(*root);
    for (int i = kMaxNumbered; i < entries.size(); ++i) {
        QXmlStreamAttributes last =
            identifiers(usualIdentifier(), kMaxNumbered).at(kMaxNumbered - 1);
        entries.at(i)->setAttribute(last);
    }
}

QString VLMC_HistorySetting::ClipString(const QString &text, int maxBytes)
{
    return clipped(text, maxBytes);
}
