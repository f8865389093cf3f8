#include "examples/kiosk/Visits.h"

namespace
{
const int kMaxVisits = 200;
}

Visits::Visits(const QString &directory) : m_directory(directory)
{
    VLMC_HistorySetting::getInstance()->loadHistory(&m_directory, kMaxVisits); // newest first
}

void Visits::add(const QUrl &url, const QString &title)
{
    VLMC_HistorySetting *const history = VLMC_HistorySetting::getInstance();
    VLMS_History entry;
    entry.url = url.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo);
    entry.title = title.isEmpty() ? entry.url : title;
    entry.dateTime = QDateTime::currentDateTime();
    const int id = history->getHistoryIndex(entry.url);
    if (id >= 0) {
        history->changeHistory(id, entry); // keeps its place until the next load
    } else {
        history->updateHistory(&entry); // to the front; a full list loses its last one
    }
    history->saveHistory(&m_directory, kMaxVisits);
}

QList<VLMS_History> Visits::latest(int count) const
{
    VLMC_HistorySetting *const history = VLMC_HistorySetting::getInstance();
    QList<VLMS_History> visits;
    for (int id = 0; id < qMin(count, history->getHistoryCnt()); ++id) {
        VLMS_History visit;
        if (history->getHistory(id, &visit)) {
            visits.append(visit);
        }
    }
    return visits;
}
