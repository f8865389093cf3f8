#include "bookmarks/VLMC_BookmarksSetting.h"

#include "benchmarks/StreamPasses.h"
#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
class BookmarksLoad
{
public:
    static const int kCallsPerTurn = 1;

    explicit BookmarksLoad(int entries) : m_lastNumber(0) { writeBookmarks(m_profile, entries); }

    void operator()() { m_store.loadBookmark(m_profile.pathPointer(), kFullStore, m_lastNumber); }

private:
    Profile m_profile;
    VLMC_BookmarksSetting m_store;
    int m_lastNumber;
};

class BookmarksList
{
public:
    static const int kCallsPerTurn = 256;

    explicit BookmarksList(int entries)
    {
        writeBookmarks(m_profile, entries);
        int lastNumber = 0;
        m_store.loadBookmark(m_profile.pathPointer(), kFullStore, lastNumber);
    }

    void operator()()
    {
        const int count = m_store.getBookmarkCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_Bookmark bookmark;
            benchmark::DoNotOptimize(m_store.getBookmark(id, &bookmark));
        }
    }

private:
    Profile m_profile;
    VLMC_BookmarksSetting m_store;
};

BENCHMARK(alone<BookmarksLoad>)->Name("Bookmarks_load")->Apply(allSizes);
BENCHMARK(alone<BookmarksList>)->Name("Bookmarks_list")->Apply(allSizes);

BENCHMARK(inPairs<BookmarksLoad, BookmarksReaderPass>)
    ->Name("Bookmarks_load_inPairs")
    ->Iterations(kPairs);
BENCHMARK(inPairs<BookmarksList, HistoryReaderPass>)
    ->Name("Bookmarks_list_inPairs")
    ->Iterations(kPairs);

BENCHMARK(growth<BookmarksLoad>)->Name("Bookmarks_load_growth")->Iterations(kPairs);
BENCHMARK(growth<BookmarksList>)->Name("Bookmarks_list_growth")->Iterations(kPairs);
} // namespace
