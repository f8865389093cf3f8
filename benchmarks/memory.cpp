// Prints what a loaded history of 999 entries takes, against its file, and what a thousand rounds
// of load, change and save leave behind.

#include "benchmarks/profile.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{
const int kEntries = 999;
const int kRounds = 1000;

qint64 heapInUse() { return qint64(mallinfo2().uordblks); }

void runDeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

void changeOne(VLMC_HistorySetting &store, int round)
{
    VLMS_History entry;
    // As long as any other, so that the file does not grow.
    entry.title = titleOf(kEntries - 1 - round % 100);
    entry.url = urlOf(kEntries - 1 - round % 100);
    entry.dateTime = timeOf(-1);
    store.updateHistory(&entry);
}
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

    qint64 afterFirst = 0;
    int round = 0;
    QTimer idle;
    QObject::connect(&idle, &QTimer::timeout, [&]() {
        // What the round before let go of is gone by now.
        if (round == kRounds / 10) {
            afterFirst = heapInUse();
        }
        if (round == kRounds) {
            application.quit();
            return;
        }
        store.loadHistory(profile.pathPointer(), kEntries);
        changeOne(store, round);
        store.saveHistory(profile.pathPointer(), kEntries);
        ++round;
    });
    idle.start(0);
    application.exec();
    printf("{\"fileBytes\": %lld, \"loadedBytes\": %lld, \"settledBytes\": %lld, "
           "\"growthBytes\": %lld, \"rounds\": %d}\n",
           (long long)fileSize, (long long)loaded, (long long)settled,
           (long long)(heapInUse() - afterFirst), kRounds - kRounds / 10);
    return 0;
}
