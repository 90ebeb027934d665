// SPDX-License-Identifier: MIT
#include "Runner.h"

#include <vector>

namespace ovra::bench {

const bool LIMITS_ARE_PROMISED = true;

namespace {

/// A console reporter that also keeps the medians in nanoseconds.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                medians[run.run_name.function_name] =
                    run.real_accumulated_time * 1e9 / static_cast<double>(run.iterations);
    }

    Medians medians;
};

} // namespace

void addBenchmark(const std::string& name, Function function, Clock clock)
{
    auto* added = benchmark::RegisterBenchmark(name.c_str(), function);
    if (clock == Clock::Own)
        added->UseManualTime()->Iterations(5);
    else
        added->UseRealTime();
}

std::optional<Medians> measureMedians(int argc, char** argv)
{
    // The ratios' options come first, so that the command line can override them.
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::string repeat = "--benchmark_repetitions=15";
    std::string aggregates = "--benchmark_report_aggregates_only=true";
    std::string time = "--benchmark_min_time=0.05";
    std::vector<char*> arguments = {argv[0], interleave.data(), repeat.data(), aggregates.data(),
                                    time.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());

    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return {};
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.medians;
}

} // namespace ovra::bench
