#include "bookmarks/VLMC_HistorySetting.h"

#include "benchmarks/SqliteVisit.h"
#include "benchmarks/StreamPasses.h"
#include "benchmarks/measure.h"
#include "benchmarks/profile.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"

namespace
{
class HistoryLoad
{
public:
    static const int kCallsPerTurn = 1;

    explicit HistoryLoad(int entries) { writeHistory(m_profile, entries); }

    void operator()() { m_store.loadHistory(m_profile.pathPointer(), kFullStore); }

private:
    Profile m_profile;
    VLMC_HistorySetting m_store;
};

// A history as the others find it: loaded, and nothing left for the event loop.
class LoadedHistory
{
public:
    static const int kCallsPerTurn = 256;

protected:
    LoadedHistory(int entries, int max)
    {
        writeHistory(m_profile, entries);
        m_store.loadHistory(m_profile.pathPointer(), max);
        runDeferredDeletes();
    }

    Profile m_profile;
    VLMC_HistorySetting m_store;
};

class HistorySave : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

    explicit HistorySave(int entries) : LoadedHistory(entries, kFullStore) {}

    void operator()() { m_store.saveHistory(m_profile.pathPointer(), kFullStore); }
};

// The list is full: the look-up misses, the oldest entry goes, the new one comes to the front.
template <unsigned char SystemLogLevel>
class HistoryVisit : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

    explicit HistoryVisit(int entries) : LoadedHistory(entries, entries), m_visited(entries)
    {
        g_uc_SystemLogLevel = SystemLogLevel;
    }

    ~HistoryVisit() { g_uc_SystemLogLevel = 0; }

    void operator()()
    {
        VLMS_History entry;
        entry.url = urlOf(m_visited);
        if (m_store.getHistoryIndex(entry.url) != -1) {
            qFatal("found what is not there");
        }
        entry.title = titleOf(m_visited);
        entry.dateTime = timeOf(-1);
        m_store.updateHistory(&entry);
        ++m_visited;
    }

private:
    int m_visited;
};

class HistoryList : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

    explicit HistoryList(int entries) : LoadedHistory(entries, kFullStore) {}

    void operator()()
    {
        const int count = m_store.getHistoryCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_History entry;
            benchmark::DoNotOptimize(m_store.getHistory(id, &entry));
        }
    }
};

class HistoryCount : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

    explicit HistoryCount(int entries) : LoadedHistory(entries, kFullStore) {}

    void operator()() { benchmark::DoNotOptimize(m_store.getHistoryCnt()); }
};

// The newest entry has id 0, and the last one takes longest to find.
class LookupOfLast : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

    explicit LookupOfLast(int entries) : LoadedHistory(entries, kFullStore), m_last(entries - 1) {}

    void operator()()
    {
        QString attributeName = QString::fromLatin1("id");
        benchmark::DoNotOptimize(
            m_store.getXMLRootNode()->getXMLNodeChildByID(m_last, attributeName));
    }

private:
    int m_last;
};

// Look-ups as plain walks over the children from the first one on.
class PlainLookups : private LoadedHistory
{
public:
    using LoadedHistory::kCallsPerTurn;

protected:
    explicit PlainLookups(int entries)
        : LoadedHistory(entries, kFullStore),
          m_children(m_store.getXMLRootNode()->getXMLNodeChildren()),
          m_attributeName(QString::fromLatin1("id"))
    {
    }

    VLMC_XMLNode *childById(int wanted) const
    {
        for (VLMC_XMLNode *const child : m_children) {
            bool ok = false;
            const int id = child->getAttribute().value(m_attributeName).toString().toInt(&ok);
            if (ok && id == wanted) {
                return child;
            }
        }
        return nullptr;
    }

    const QList<VLMC_XMLNode *> &m_children;
    const QString m_attributeName;
};

class PlainLookupOfLast : private PlainLookups
{
public:
    using PlainLookups::kCallsPerTurn;

    explicit PlainLookupOfLast(int entries) : PlainLookups(entries), m_last(entries - 1) {}

    void operator()() { benchmark::DoNotOptimize(childById(m_last)); }

private:
    int m_last;
};

// A search per number, which is what one pass stands for.
class PlainCount : private PlainLookups
{
public:
    using PlainLookups::kCallsPerTurn;

    explicit PlainCount(int entries) : PlainLookups(entries) {}

    void operator()()
    {
        int counted = 0;
        for (int wanted = 0; wanted < m_children.size(); ++wanted) {
            counted += childById(wanted) ? 1 : 0;
        }
        benchmark::DoNotOptimize(counted);
    }
};

BENCHMARK(alone<HistoryLoad>)->Name("History_load")->Apply(allSizes);
BENCHMARK(alone<HistorySave>)->Name("History_save")->Apply(allSizes);
BENCHMARK(alone<HistoryVisit<0>>)->Name("History_visit")->Apply(allSizes);
BENCHMARK(alone<HistoryVisit<1>>)->Name("History_visit_systemLog")->Apply(allSizes);
BENCHMARK(alone<HistoryList>)->Name("History_list")->Apply(allSizes);
BENCHMARK(alone<HistoryCount>)->Name("Count_history")->Apply(allSizes);
BENCHMARK(alone<LookupOfLast>)->Name("Lookup_lastId")->Apply(allSizes);
BENCHMARK(alone<PlainCount>)->Name("PlainCount_history")->Apply(allSizes);
BENCHMARK(alone<PlainLookupOfLast>)->Name("PlainLookup_lastId")->Apply(allSizes);

BENCHMARK(inPairs<HistoryLoad, HistoryReaderPass>)
    ->Name("History_load_inPairs")
    ->Iterations(kPairs);
BENCHMARK(inPairs<HistorySave, HistoryWriterPass>)
    ->Name("History_save_inPairs")
    ->Iterations(kPairs);
BENCHMARK(inPairs<HistoryVisit<0>, SqliteVisit>)->Name("History_visit_inPairs")->Iterations(kPairs);
BENCHMARK(inPairs<HistoryVisit<1>, SqliteVisit>)
    ->Name("History_visit_systemLog_inPairs")
    ->Iterations(kPairs);
BENCHMARK(inPairs<HistoryList, HistoryReaderPass>)
    ->Name("History_list_inPairs")
    ->Iterations(kPairs);

BENCHMARK(growth<HistoryLoad>)->Name("History_load_growth")->Iterations(kPairs);
BENCHMARK(growth<HistorySave>)->Name("History_save_growth")->Iterations(kPairs);
BENCHMARK(growth<HistoryVisit<0>>)->Name("History_visit_growth")->Iterations(kPairs);
BENCHMARK(growth<HistoryList>)->Name("History_list_growth")->Iterations(kPairs);
} // namespace
