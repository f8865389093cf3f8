#include "bookmarks/VLMC_HistorySetting.h"

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"
#include "core/VLMC_XMLNode.h"

namespace
{
const int kMax = 999;

void History_load(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    for (auto _ : state) {
        store.loadHistory(profile.pathPointer(), kMax);
        runDeferredDeletes(state);
    }
}
BENCHMARK(History_load)->Apply(allSizes);

void History_save(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    for (auto _ : state) {
        store.saveHistory(profile.pathPointer(), kMax);
    }
}
BENCHMARK(History_save)->Apply(allSizes);

// The list is full: the look-up misses, the oldest entry goes, the new one comes to the front.
void visit(benchmark::State &state, unsigned char systemLog)
{
    Profile profile;
    const int entries = entriesOf(state);
    writeHistory(profile, entries);
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), entries);
    runDeferredDeletes();
    g_uc_SystemLogLevel = systemLog;
    int visited = entries;
    for (auto _ : state) {
        VLMS_History entry;
        entry.url = urlOf(visited);
        if (store.getHistoryIndex(entry.url) != -1) {
            state.SkipWithError("found what is not there");
            break;
        }
        entry.title = titleOf(visited);
        entry.dateTime = timeOf(-1);
        store.updateHistory(&entry);
        ++visited;
        if (visited % 256 == 0) {
            runDeferredDeletes(state);
        }
    }
    g_uc_SystemLogLevel = 0;
}

void History_visit(benchmark::State &state) { visit(state, 0); }
BENCHMARK(History_visit)->Apply(allSizes);

void History_visit_systemLog(benchmark::State &state) { visit(state, 1); }
BENCHMARK(History_visit_systemLog)->Apply(allSizes);

void History_list(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    for (auto _ : state) {
        const int count = store.getHistoryCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_History entry;
            benchmark::DoNotOptimize(store.getHistory(id, &entry));
        }
    }
}
BENCHMARK(History_list)->Apply(allSizes);

VLMC_XMLNode *lastEntry(VLMC_XMLNode &root, int id)
{
    QString attributeName = QString::fromLatin1("id");
    return root.getXMLNodeChildByID(id, attributeName);
}

void Lookup_lastId(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(lastEntry(*store.getXMLRootNode(), entriesOf(state) - 1));
    }
}
BENCHMARK(Lookup_lastId)->Apply(allSizes);

// The same look-up as a plain walk over the children from the first one on.
void PlainLookup_lastId(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    const QList<VLMC_XMLNode *> &children = store.getXMLRootNode()->getXMLNodeChildren();
    const QString attributeName = QString::fromLatin1("id");
    const int wanted = entriesOf(state) - 1;
    for (auto _ : state) {
        VLMC_XMLNode *found = nullptr;
        for (VLMC_XMLNode *const child : children) {
            bool ok = false;
            const int id = child->getAttribute().value(attributeName).toString().toInt(&ok);
            if (ok && id == wanted) {
                found = child;
                break;
            }
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(PlainLookup_lastId)->Apply(allSizes);

// Counting as a search per number, which is what one pass stands for.
void PlainCount_history(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    const QList<VLMC_XMLNode *> &children = store.getXMLRootNode()->getXMLNodeChildren();
    const QString attributeName = QString::fromLatin1("id");
    for (auto _ : state) {
        int counted = 0;
        for (int wanted = 0; wanted < children.size(); ++wanted) {
            for (VLMC_XMLNode *const child : children) {
                bool ok = false;
                const int id = child->getAttribute().value(attributeName).toString().toInt(&ok);
                if (ok && id == wanted) {
                    ++counted;
                    break;
                }
            }
        }
        benchmark::DoNotOptimize(counted);
    }
}
BENCHMARK(PlainCount_history)->Apply(allSizes);

void Count_history(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, entriesOf(state));
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMax);
    runDeferredDeletes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.getHistoryCnt());
    }
}
BENCHMARK(Count_history)->Apply(allSizes);
} // namespace
