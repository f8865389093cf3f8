#ifndef MEASURE_H
#define MEASURE_H

#include "core/VLMG_Debug.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <benchmark/benchmark.h>

// The sizes that every operation is measured at.
inline void allSizes(benchmark::internal::Benchmark *measurement)
{
    for (const int entries : {10, 125, 250, 500, 999}) {
        measurement->Arg(entries);
    }
}

inline int entriesOf(const benchmark::State &state) { return int(state.range(0)); }

// Frees what the stores have let go of, as the browser's event loop would between two calls.
inline void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The same in the middle of a measurement, and not part of it.
inline void runDeferredDeletes(benchmark::State &state)
{
    state.PauseTiming();
    runDeferredDeletes();
    state.ResumeTiming();
}

#endif
