// Prints how much memory a loaded history of 999 entries takes, compared with its file, and how
// much a thousand rounds of load, change and save leave behind.

#include "benchmarks/profile.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QTimerEvent>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{
const int kEntries = 999;
const int kRounds = 1000;
const int kFirstRounds = kRounds / 10;

qint64 heapInUse() { return qint64(mallinfo2().uordblks); }

void runDeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

void changeOne(VLMC_HistorySetting &store, int round)
{
    VLMS_History entry;
    // As long as the others, so that the file does not grow.
    entry.title = titleOf(kEntries - 1 - round % 100);
    entry.url = urlOf(kEntries - 1 - round % 100);
    entry.dateTime = timeOf(-1);
    store.updateHistory(&entry);
}

// A round each time that the event loop has nothing else to do, then the end of the loop.
class Rounds : public QObject
{
public:
    Rounds(VLMC_HistorySetting &store, Profile &profile)
        : m_store(store), m_profile(profile), m_round(0), m_afterFirst(0)
    {
    }

    /// The heap in use after the first rounds, in bytes.
    qint64 afterFirst() const { return m_afterFirst; }

protected:
    void timerEvent(QTimerEvent *) override
    {
        // What the previous round released is gone by now.
        if (m_round == kFirstRounds) {
            m_afterFirst = heapInUse();
        }
        if (m_round == kRounds) {
            QCoreApplication::quit();
            return;
        }
        m_store.loadHistory(m_profile.pathPointer(), kEntries);
        changeOne(m_store, m_round);
        m_store.saveHistory(m_profile.pathPointer(), kEntries);
        ++m_round;
    }

private:
    VLMC_HistorySetting &m_store;
    Profile &m_profile;
    int m_round;
    qint64 m_afterFirst;
};
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    g_uc_SystemLogLevel = 0;
    Profile profile;
    writeHistory(profile, kEntries);
    const qint64 fileSize = QFileInfo(profile.file("visit.xml")).size();

    const qint64 before = heapInUse();
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kEntries);
    const qint64 loaded = heapInUse() - before;
    runDeferredDeletes();
    const qint64 settled = heapInUse() - before;

    Rounds rounds(store, profile);
    rounds.startTimer(0);
    application.exec();
    printf("{\"fileBytes\": %lld, \"loadedBytes\": %lld, \"settledBytes\": %lld, "
           "\"growthBytes\": %lld, \"rounds\": %d}\n",
           (long long)fileSize, (long long)loaded, (long long)settled,
           (long long)(heapInUse() - rounds.afterFirst()), kRounds - kFirstRounds);
    return 0;
}
