#include "core/VLMG_Debug.h"

#include <QtCore/QCoreApplication>
#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    g_uc_SystemLogLevel = 0;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
