// SPDX-License-Identifier: MIT
#include "Runner.h"

#include <algorithm>
#include <random>
#include <vector>

namespace ovra::bench {

const bool LIMITS_ARE_PROMISED = false;

namespace {

constexpr int REPETITIONS = 15;
constexpr double RUN_SECONDS = 0.05;
constexpr std::int64_t OWN_CLOCK_ITERATIONS = 1;

struct Added
{
    std::string name;
    Function function;
    std::int64_t iterations; ///< of one run; 0 until it was found out how many fill one
    std::vector<double> times;

    double run(std::int64_t count) const
    {
        benchmark::State state(count);
        function(state);
        return state.seconds() / static_cast<double>(count);
    }

    void findIterations()
    {
        for (iterations = 1; run(iterations) * static_cast<double>(iterations) < RUN_SECONDS;)
            iterations *= 2;
    }
};

std::vector<Added>& added()
{
    static std::vector<Added> all;
    return all;
}

} // namespace

void addBenchmark(const std::string& name, Function function, Clock clock)
{
    added().push_back({name, function, clock == Clock::Own ? OWN_CLOCK_ITERATIONS : 0, {}});
}

std::optional<Medians> measureMedians(int argc, char**)
{
    if (argc > 1)
        return {};
    std::vector<Added*> order;
    for (Added& each : added()) {
        if (each.iterations == 0)
            each.findIterations();
        order.insert(order.end(), REPETITIONS, &each);
    }
    std::shuffle(order.begin(), order.end(), std::mt19937(std::random_device()()));
    for (Added* each : order)
        each->times.push_back(each->run(each->iterations) * 1e9);

    Medians medians;
    for (Added& each : added()) {
        const auto middle = each.times.begin() + REPETITIONS / 2;
        std::nth_element(each.times.begin(), middle, each.times.end());
        medians[each.name] = *middle;
    }
    return medians;
}

} // namespace ovra::bench
