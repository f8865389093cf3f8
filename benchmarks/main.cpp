#include "core/VLMG_Debug.h"

#include <QtCore/QCoreApplication>
#include <benchmark/benchmark.h>
#include <malloc.h>

namespace
{
const int kKeptBytes = 64 * 1024 * 1024;
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    g_uc_SystemLogLevel = 0;
    // The heap of a browser is larger than what a store frees, and not given back each time.
    mallopt(M_TRIM_THRESHOLD, kKeptBytes);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
