#include "cookies/VLMC_AuthSetting.h"

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
const int kMax = 999;

void Credentials_list(benchmark::State &state)
{
    Profile profile;
    writeCredentials(profile, entriesOf(state));
    VLMC_AuthSetting store;
    store.loadAuthInfo(profile.pathPointer(), kMax);
    for (auto _ : state) {
        const int count = store.getAuthInfoCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_AuthInfo info;
            benchmark::DoNotOptimize(store.getAuthInfo(id, &info));
        }
    }
}
BENCHMARK(Credentials_list)->Apply(allSizes);

void Credentials_setAll(benchmark::State &state)
{
    Profile profile;
    VLMC_AuthSetting store;
    for (auto _ : state) {
        state.PauseTiming();
        store.loadAuthInfo(profile.pathPointer(), kMax);
        state.ResumeTiming();
        for (int entry = 0; entry < entriesOf(state); ++entry) {
            VLMS_AuthInfo info;
            info.hostName = QString::fromLatin1("host-%1.example.com").arg(entry);
            info.portNum = QString::fromLatin1("8080");
            info.authType = 0;
            info.user = "user name";
            info.passwd = "password";
            benchmark::DoNotOptimize(store.setAuthInfo(&info));
        }
        runDeferredDeletes(state);
    }
}
BENCHMARK(Credentials_setAll)->Apply(allSizes);
} // namespace
