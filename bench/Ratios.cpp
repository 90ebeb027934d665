#include "Ratios.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace ovra::bench {

namespace {

struct Pair
{
    std::string name;
    double limit;
};

std::vector<Pair>& pairs()
{
    static std::vector<Pair> all;
    return all;
}

std::string yardstickName(const std::string& name)
{
    return name + " / yardstick";
}

/// Prints what the console reporter prints, and keeps the medians in nanoseconds.
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

    std::map<std::string, double> medians;
};

/// False when the ratio exceeds its limit.
bool print(const Pair& pair, const std::map<std::string, double>& medians)
{
    const auto measured = medians.find(pair.name);
    const auto yardstick = medians.find(yardstickName(pair.name));
    if (measured == medians.end() || yardstick == medians.end())
        return true; // filtered out
    const double ratio = measured->second / yardstick->second;
    const bool kept = pair.limit == 0 || ratio <= pair.limit;
    std::printf("%-52s %8.3f   %12.2f ns / %12.2f ns   ", pair.name.c_str(), ratio, measured->second,
                yardstick->second);
    if (pair.limit == 0)
        std::printf("reported\n");
    else
        std::printf("limit %.2f%s\n", pair.limit, kept ? "" : "  EXCEEDED");
    return kept;
}

bool takeStrict(int& argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--strict") != 0)
            continue;
        for (int j = i; j + 1 < argc; ++j)
            argv[j] = argv[j + 1];
        --argc;
        return true;
    }
    return false;
}

} // namespace

bool addRatio(const char* name, Function measured, Function yardstick, double limit, Clock clock)
{
    pairs().push_back({name, limit});
    auto* first = benchmark::RegisterBenchmark(name, measured);
    auto* second = benchmark::RegisterBenchmark(yardstickName(name).c_str(), yardstick);
    for (auto* each : {first, second})
        if (clock == Clock::Own)
            each->UseManualTime()->Iterations(5);
        else
            each->UseRealTime();
    return true;
}

int runRatios(int argc, char** argv)
{
    const bool strict = takeStrict(argc, argv);
    // What the ratios need comes first, so that the command line may still say otherwise.
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
        return 2;
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\n%-52s %8s   %s\n", "median of the measured / of its yardstick", "ratio", "medians");
    bool allKept = true;
    for (const Pair& pair : pairs())
        allKept = print(pair, reporter.medians) && allKept;
    return strict && !allKept ? 1 : 0;
}

} // namespace ovra::bench
