// Loads next to passes over the same file, one after the other: a processor whose clock changes, or
// that others use too, is as fast for the one as for the other. The counter "ratio" is the median
// of the ratios.

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"
#include "benchmarks/references.h"
#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"

#include <QtCore/QElapsedTimer>

#include <algorithm>
#include <vector>

namespace
{
const int kMax = 999;

template <typename Work>
double nanoseconds(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed());
}

template <typename Load>
void inPairs(benchmark::State &state, const QString &path, Load load)
{
    std::vector<double> ratios;
    for (auto _ : state) {
        const double reference = nanoseconds([&] { benchmark::DoNotOptimize(readerPass(path)); });
        ratios.push_back(nanoseconds(load) / reference);
        runDeferredDeletes(state);
    }
    std::sort(ratios.begin(), ratios.end());
    state.counters["ratio"] = ratios.at(ratios.size() / 2);
}

void History_load_inPairs(benchmark::State &state)
{
    Profile profile;
    writeHistory(profile, kMax);
    VLMC_HistorySetting store;
    inPairs(state, profile.file("visit.xml"),
            [&] { store.loadHistory(profile.pathPointer(), kMax); });
}
BENCHMARK(History_load_inPairs)->Iterations(100);

void Bookmarks_load_inPairs(benchmark::State &state)
{
    Profile profile;
    writeBookmarks(profile, kMax);
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    inPairs(state, profile.file("bookmark.xml"),
            [&] { store.loadBookmark(profile.pathPointer(), kMax, lastNumber); });
}
BENCHMARK(Bookmarks_load_inPairs)->Iterations(100);
} // namespace
