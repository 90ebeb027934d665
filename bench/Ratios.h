// SPDX-License-Identifier: MIT
/// \file
/// RATIO: a measurement as a ratio of the library's time to that of a yardstick in the same run.
///
///     RATIO("forwarded call", forwardedCall, directCall, 1.20);
///     int main(int argc, char** argv) { return ovra::bench::runRatios(argc, argv); }
///
/// Each side runs many times, interleaved at random, and the ratio compares the medians. The last lines of a
/// run print for each pair: ratio, both medians, and the limit of the ratio. A ratio beyond its limit is
/// marked. It changes the exit code only with --strict, because figures depend on the machine.
#pragma once

#include <benchmark/benchmark.h>

namespace ovra::bench {

using Function = void (*)(benchmark::State&);

/// The clock of a benchmark.
enum class Clock
{
    Wall,
    Own, ///< the times that it reports with SetIterationTime
};

/// \p limit 0: reported without a limit.
bool addRatio(const char* name, Function measured, Function yardstick, double limit,
              Clock clock = Clock::Wall);

int runRatios(int argc, char** argv);

} // namespace ovra::bench

#define OVRA_BENCH_PASTE(a, b) a##b
#define OVRA_BENCH_JOIN(a, b) OVRA_BENCH_PASTE(a, b)
#define RATIO(name, measured, yardstick, ...)             \
    static const bool OVRA_BENCH_JOIN(ratio_, __LINE__) = \
        ovra::bench::addRatio(name, measured, yardstick, __VA_ARGS__)
