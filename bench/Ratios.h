/// \file
/// Every figure here is a ratio: what the product does, to a yardstick that runs beside it in the same run.
///
///     RATIO("forwarded call", forwardedCall, directCall, 1.20);
///     int main(int argc, char** argv) { return ovra::bench::runRatios(argc, argv); }
///
/// Each side runs many times, the two interleaved at random, and the medians are set against each other. The
/// last lines of a run say for each pair: ratio, both medians, and the limit that the ratio should keep. A
/// limit that is not kept is marked, and changes the exit code only with --strict: a figure depends on the
/// machine, a test must not.
#pragma once

#include <benchmark/benchmark.h>

namespace ovra::bench {

using Function = void (*)(benchmark::State&);

/// Whose clock a benchmark goes by.
enum class Clock
{
    Wall,
    Own, ///< the times that it reports with SetIterationTime
};

/// \p limit 0: reported, not promised.
bool addRatio(const char* name, Function measured, Function yardstick, double limit,
              Clock clock = Clock::Wall);

int runRatios(int argc, char** argv);

} // namespace ovra::bench

#define OVRA_BENCH_PASTE(a, b) a##b
#define OVRA_BENCH_JOIN(a, b) OVRA_BENCH_PASTE(a, b)
#define RATIO(name, measured, yardstick, ...)             \
    static const bool OVRA_BENCH_JOIN(ratio_, __LINE__) = \
        ovra::bench::addRatio(name, measured, yardstick, __VA_ARGS__)
