#include "tests/differential/PlainHistory.h"

#include "bookmarks/VLMC_HistorySetting.h"

#include <algorithm>

namespace
{
const char kForm[] = "yyyy/MM/dd hh:mm";

QString textOfTime(const QDateTime &time) { return time.toString(textOf(kForm)); }

void setText(const ElementPointer &element, const QString &text)
{
    if (element) {
        element->text = text;
    }
}

bool isEarlierListed(const VLMS_History &left, const VLMS_History &right)
{
    return right.dateTime < left.dateTime;
}
} // namespace

void PlainHistory::loadHistory(const QString *dir, int max)
{
    print(3, "[VLMC_HistorySetting::loadHistory] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_HistorySetting::loadHistory] Path is NULL or empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_HistorySetting::loadHistory] Error load_max:" + QByteArray::number(max));
        return;
    }
    m_loadMax = max;
    deleteAllSetting();
    load(*dir + textOf("visit.xml"));
    setIds();
    sortHistory();
    print(3, "[VLMC_HistorySetting::loadHistory] end");
}

void PlainHistory::saveHistory(const QString *dir, int max)
{
    print(3, "[VLMC_HistorySetting::saveHistory] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_HistorySetting::saveHistory] Path is NULL or empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_HistorySetting::saveAuthInfo] Error save_max:" + QByteArray::number(max));
        return;
    }
    nameRoot("history");
    save(*dir + textOf("visit.xml"));
    print(3, "[VLMC_HistorySetting::saveHistory] end");
}

int PlainHistory::getHistoryCnt() { return count("pageInfo"); }

bool PlainHistory::getHistory(int id, VLMS_History *out)
{
    print(3, "[VLMC_HistorySetting::getHistory]");
    const ElementPointer entry = byId(id);
    if (!out || !entry) {
        return false;
    }
    if (childOf(entry, "title")) {
        out->title = childOf(entry, "title")->text;
    }
    if (childOf(entry, "url")) {
        out->url = childOf(entry, "url")->text;
    }
    if (childOf(entry, "dateTime")) {
        out->dateTime = timeOf(childOf(entry, "dateTime")->text, kForm);
    }
    return true;
}

int PlainHistory::getHistoryIndex(const QString &url)
{
    VLMS_History entry;
    const int entries = getHistoryCnt();
    for (int id = 0; id < entries; ++id) {
        if (getHistory(id, &entry) && entry.url == url) {
            return id;
        }
    }
    return -1;
}

void PlainHistory::setHistory(const VLMS_History *entry)
{
    print(3, "[VLMC_HistorySetting::setHistory]");
    if (!entry) {
        return;
    }
    const ElementPointer page = add(root, "pageInfo", QString(), 0, true);
    add(page, "title", entry->title);
    add(page, "url", entry->url);
    add(page, "dateTime", textOfTime(entry->dateTime));
    setIds();
}

void PlainHistory::updateHistory(const VLMS_History *entry)
{
    print(3, "[VLMC_HistorySetting::updateHistory]");
    if (childCount() >= m_loadMax) {
        deleteHistory(m_loadMax - 1);
    }
    setHistory(entry);
}

void PlainHistory::changeHistory(int id, const VLMS_History &entry)
{
    print(3, "[VLMC_HistorySetting::changeHistory]");
    setText(childOf(byId(id), "title"), entry.title);
    setText(childOf(byId(id), "url"), entry.url);
    setText(childOf(byId(id), "dateTime"), textOfTime(entry.dateTime));
}

void PlainHistory::changeHistoryTitle(int id, const QString &title)
{
    print(3, "[VLMC_HistorySetting::changeHistoryTitle]");
    setText(childOf(byId(id), "title"), title);
}

void PlainHistory::deleteHistory(int id)
{
    print(3, "[VLMC_HistorySetting::deleteHistory] si_nodeNum:" + QByteArray::number(id));
    deleteById(id);
    setIds();
}

void PlainHistory::sortHistory()
{
    print(3, "[VLMC_HistorySetting::sortHistory]");
    if (!root) {
        return;
    }
    QList<VLMS_History> entries;
    const int ids = childCount();
    for (int id = 0; id < ids; ++id) {
        VLMS_History entry;
        if (getHistory(id, &entry)) {
            entries.append(entry);
        }
    }
    std::stable_sort(entries.begin(), entries.end(), isEarlierListed);
    deleteAllSetting();
    for (int i = int(entries.size()) - 1; i >= 0; --i) {
        setHistory(&entries.at(i));
    }
    setIds();
}
