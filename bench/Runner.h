// SPDX-License-Identifier: MIT
/// \file
/// Runs the measurements with Google Benchmark, or with a small replacement on platforms without it.
#pragma once

#include "Ratios.h"

#include <map>
#include <optional>
#include <string>

namespace ovra::bench {

/// The limits apply to Linux; on other platforms figures are only reported.
extern const bool LIMITS_ARE_PROMISED;

/// Nanoseconds for one iteration, by the benchmark's name.
using Medians = std::map<std::string, double>;

void addBenchmark(const std::string& name, Function function, Clock clock);

/// Runs all benchmarks many times in a random order. Empty if the command line is invalid.
std::optional<Medians> measureMedians(int argc, char** argv);

} // namespace ovra::bench
