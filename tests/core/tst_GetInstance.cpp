// The one instance of each store, asked for by several threads that all come first.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/Processes.h"

#include <atomic>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
const int kThreads = 4;
// A process has only one first call per store.
const int kProcesses = 40;

template <typename Store>
void *instanceOf()
{
    return Store::getInstance();
}

typedef void *(*Instance)();

// True when all threads get the same instance, which is what a later call gets too.
bool agree(Instance instance)
{
    std::atomic<int> arrived(0);
    void *found[kThreads] = {};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.push_back(std::thread([&, i] {
            ++arrived;
            while (arrived < kThreads) {
                std::this_thread::yield();
            }
            found[i] = instance();
        }));
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (void *const one : found) {
        if (!one || one != instance()) {
            return false;
        }
    }
    return true;
}

bool agreeInNewProcess(Instance instance)
{
    return inChild([instance] { _exit(agree(instance) ? 0 : 1); }) == 0;
}
} // namespace

Q_DECLARE_METATYPE(Instance)

class tst_GetInstance : public QObject
{
    Q_OBJECT

private slots:
    void getInstance_isOneForAllThreads_data();
    void getInstance_isOneForAllThreads();
};

void tst_GetInstance::getInstance_isOneForAllThreads_data()
{
    QTest::addColumn<Instance>("instance");
    QTest::newRow("common preferences") << Instance(instanceOf<VLMC_BrowserCommonSetting>);
    QTest::newRow("user preferences") << Instance(instanceOf<VLMC_BrowserUserSetting>);
    QTest::newRow("bookmarks") << Instance(instanceOf<VLMC_BookmarksSetting>);
    QTest::newRow("history") << Instance(instanceOf<VLMC_HistorySetting>);
    QTest::newRow("thumbnails") << Instance(instanceOf<VLMC_ThumbnailConverter>);
    QTest::newRow("cookies") << Instance(instanceOf<VLMC_CookieSetting>);
    QTest::newRow("credentials") << Instance(instanceOf<VLMC_AuthSetting>);
    QTest::newRow("fonts") << Instance(instanceOf<VLMC_FontListSetting>);
}

void tst_GetInstance::getInstance_isOneForAllThreads()
{
    QFETCH(Instance, instance);
    for (int i = 0; i < kProcesses; ++i) {
        QVERIFY(agreeInNewProcess(instance));
    }
}

QTEST_GUILESS_MAIN(tst_GetInstance)
#include "tst_GetInstance.moc"
