#include "bookmarks/VLMC_BookmarksSetting.h"

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
const int kMax = 999;

void Bookmarks_load(benchmark::State &state)
{
    Profile profile;
    writeBookmarks(profile, entriesOf(state));
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    for (auto _ : state) {
        store.loadBookmark(profile.pathPointer(), kMax, lastNumber);
        runDeferredDeletes(state);
    }
}
BENCHMARK(Bookmarks_load)->Apply(allSizes);

void Bookmarks_list(benchmark::State &state)
{
    Profile profile;
    writeBookmarks(profile, entriesOf(state));
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    store.loadBookmark(profile.pathPointer(), kMax, lastNumber);
    for (auto _ : state) {
        const int count = store.getBookmarkCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_Bookmark bookmark;
            benchmark::DoNotOptimize(store.getBookmark(id, &bookmark));
        }
    }
}
BENCHMARK(Bookmarks_list)->Apply(allSizes);
} // namespace
