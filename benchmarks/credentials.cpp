#include "cookies/VLMC_AuthSetting.h"

#include "benchmarks/StreamPasses.h"
#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

namespace
{
class CredentialsList
{
public:
    static const int kCallsPerTurn = 256;

    explicit CredentialsList(int entries)
    {
        writeCredentials(m_profile, entries);
        m_store.loadAuthInfo(m_profile.pathPointer(), kFullStore);
    }

    void operator()()
    {
        const int count = m_store.getAuthInfoCnt();
        for (int id = 0; id < count; ++id) {
            VLMS_AuthInfo info;
            benchmark::DoNotOptimize(m_store.getAuthInfo(id, &info));
        }
    }

private:
    Profile m_profile;
    VLMC_AuthSetting m_store;
};

// As many operations as there are entries, from an empty store on.
class CredentialsSetAll
{
public:
    static const int kCallsPerTurn = 1;

    explicit CredentialsSetAll(int entries) : m_entries(entries) {}

    void operator()()
    {
        m_store.loadAuthInfo(m_profile.pathPointer(), kFullStore);
        for (int entry = 0; entry < m_entries; ++entry) {
            VLMS_AuthInfo info;
            info.hostName = QString::fromLatin1("host-%1.example.com").arg(entry);
            info.portNum = QString::fromLatin1("8080");
            info.authType = 0;
            info.user = "user name";
            info.passwd = "password";
            benchmark::DoNotOptimize(m_store.setAuthInfo(&info));
        }
    }

private:
    Profile m_profile;
    VLMC_AuthSetting m_store;
    int m_entries;
};

BENCHMARK(alone<CredentialsList>)->Name("Credentials_list")->Apply(allSizes);
BENCHMARK(alone<CredentialsSetAll>)->Name("Credentials_setAll")->Apply(allSizes);

BENCHMARK(inPairs<CredentialsList, HistoryReaderPass>)
    ->Name("Credentials_list_inPairs")
    ->Iterations(kPairs);

BENCHMARK(growth<CredentialsList>)->Name("Credentials_list_growth")->Iterations(kPairs);
} // namespace
