// SPDX-License-Identifier: MIT
#include "Ratios.h"

#include "Runner.h"

#include <cstdio>
#include <cstring>
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

/// False if the ratio exceeds its limit.
bool print(const Pair& pair, const Medians& medians)
{
    const auto measured = medians.find(pair.name);
    const auto yardstick = medians.find(yardstickName(pair.name));
    if (measured == medians.end() || yardstick == medians.end())
        return true; // filtered out
    const double ratio = measured->second / yardstick->second;
    const double limit = LIMITS_ARE_PROMISED ? pair.limit : 0;
    const bool kept = limit == 0 || ratio <= limit;
    std::printf("%-52s %8.3f   %12.2f ns / %12.2f ns   ", pair.name.c_str(), ratio, measured->second,
                yardstick->second);
    if (limit == 0)
        std::printf("reported\n");
    else
        std::printf("limit %.2f%s\n", limit, kept ? "" : "  EXCEEDED");
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
    addBenchmark(name, measured, clock);
    addBenchmark(yardstickName(name), yardstick, clock);
    return true;
}

int runRatios(int argc, char** argv)
{
    const bool strict = takeStrict(argc, argv);
    const auto medians = measureMedians(argc, argv);
    if (!medians)
        return 2;
    std::printf("\n%-52s %8s   %s\n", "median of the measured / of its yardstick", "ratio", "medians");
    bool allKept = true;
    for (const Pair& pair : pairs())
        allKept = print(pair, *medians) && allKept;
    return strict && !allKept ? 1 : 0;
}

} // namespace ovra::bench
