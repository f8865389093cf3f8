#include "fonts/VLMC_FontListSetting.h"

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
void Fonts_list(benchmark::State &state)
{
    const Profile profile;
    writeFonts(profile, entriesOf(state));
    VLMC_FontListSetting store;
    store.loadFontList(profile.path());
    for (auto _ : state) {
        const int count = store.getCount();
        for (int index = 0; index < count; ++index) {
            benchmark::DoNotOptimize(store.getFont(index));
        }
    }
}
BENCHMARK(Fonts_list)->Apply(allSizes);
} // namespace
