#ifndef MEASURE_H
#define MEASURE_H

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEvent>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <vector>

// What is measured, an operation or a reference, is a class: an object is made for a number of
// entries, and each call of it is one measurement. Names such as History_visit are those of
// docs/performance.md.

const int kFullStore = 999;
const int kQuarterStore = 250;
// Enough for a steady median.
const int kPairs = 100;
// Bytes: too many for glibc to take from its lists of small blocks.
const size_t kLargeRequest = 64 * 1024;

// The sizes that every operation is measured at.
inline void allSizes(benchmark::internal::Benchmark *measurement)
{
    for (const int entries : {10, 125, kQuarterStore, 500, kFullStore}) {
        measurement->Arg(entries);
    }
}

// Frees what the stores have released, as the browser's event loop would between two calls. The
// allocator joins the blocks at the next larger request. That request is made here, since it is
// part of freeing them.
inline void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    void *const joined = malloc(kLargeRequest);
    benchmark::DoNotOptimize(joined);
    free(joined);
}

// One measurement after the other. After every kCallsPerTurn of them the event loop runs, which is
// not measured.
template <typename Measured>
void alone(benchmark::State &state)
{
    Measured measured(int(state.range(0)));
    int calls = 0;
    for (auto _ : state) {
        measured();
        if (++calls % Measured::kCallsPerTurn == 0) {
            state.PauseTiming();
            runDeferredDeletes();
            state.ResumeTiming();
        }
    }
}

// The time of one call right after another, so that the processor's cache holds what it needs, as
// when calls are measured one after the other.
template <typename Measured>
double nanosecondsOf(Measured &measured)
{
    measured();
    runDeferredDeletes();
    QElapsedTimer timer;
    timer.start();
    measured();
    return double(timer.nsecsElapsed());
}

// The median of the ratios of the two, measured right after each other: a processor whose clock
// changes, or that others use too, is equally fast for both.
template <typename First, typename Second>
double medianRatio(benchmark::State &state, First &first, Second &second)
{
    std::vector<double> ratios;
    for (auto _ : state) {
        const double time = nanosecondsOf(first);
        ratios.push_back(time / nanosecondsOf(second));
        runDeferredDeletes();
    }
    std::sort(ratios.begin(), ratios.end());
    return ratios.at(ratios.size() / 2);
}

// Compares an operation on a full store with its reference, in the counter "ratio".
template <typename Operation, typename Reference>
void inPairs(benchmark::State &state)
{
    Operation operation(kFullStore);
    Reference reference(kFullStore);
    state.counters["ratio"] = medianRatio(state, operation, reference);
}

// Compares an operation on a full store with the same one on a smaller store. The counter
// "exponent" is the power of the number of entries with which the time grows.
template <typename Operation>
void growth(benchmark::State &state)
{
    Operation full(kFullStore);
    Operation quarter(kQuarterStore);
    const double ratio = medianRatio(state, full, quarter);
    state.counters["exponent"] = std::log(ratio) / std::log(double(kFullStore) / kQuarterStore);
}

#endif
