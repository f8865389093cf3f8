#include "fonts/VLMC_FontListSetting.h"

#include "benchmarks/StreamPasses.h"
#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
class FontsList
{
public:
    static const int kCallsPerTurn = 256;

    explicit FontsList(int entries)
    {
        writeFonts(m_profile, entries);
        m_store.loadFontList(m_profile.path());
    }

    void operator()()
    {
        const int count = m_store.getCount();
        for (int index = 0; index < count; ++index) {
            benchmark::DoNotOptimize(m_store.getFont(index));
        }
    }

private:
    Profile m_profile;
    VLMC_FontListSetting m_store;
};

BENCHMARK(alone<FontsList>)->Name("Fonts_list")->Apply(allSizes);

BENCHMARK(inPairs<FontsList, HistoryReaderPass>)->Name("Fonts_list_inPairs")->Iterations(kPairs);

BENCHMARK(growth<FontsList>)->Name("Fonts_list_growth")->Iterations(kPairs);
} // namespace
