/// \file
/// What runs the measurements: Google Benchmark, or where there is none for the platform, a small stand-in.
#pragma once

#include "Ratios.h"

#include <map>
#include <optional>
#include <string>

namespace ovra::bench {

/// The limits are set for Linux; elsewhere figures are reported only.
extern const bool LIMITS_ARE_PROMISED;

/// Nanoseconds for one iteration, by the benchmark's name.
using Medians = std::map<std::string, double>;

void addBenchmark(const std::string& name, Function function, Clock clock);

/// Runs everything that was added, many times and in a random order. Nothing when it does not understand the
/// command line.
std::optional<Medians> measureMedians(int argc, char** argv);

} // namespace ovra::bench
