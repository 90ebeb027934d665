/// \file
/// What the program is asked to do.
#pragma once

#include "conformance/Test.h"

#include <chrono>
#include <set>
#include <string>
#include <vector>

namespace ovra::conformance {

struct Options
{
    bool help = false;
    bool version = false;
    bool list = false;
    std::vector<std::string> include; ///< patterns; none: all tests
    std::vector<std::string> exclude;
    std::string onlyFailed; ///< a report of an earlier run
    std::string json;       ///< where to write the report
    std::chrono::seconds timeLimit{60};
    int jobs = 1;    ///< tests that run at a time
    std::string run; ///< the one test that this process is for
};

/// Throws std::invalid_argument that names the argument.
Options parseOptions(int argc, char** argv);
std::string helpText();

/// The tests that \p options choose, in their order. Throws std::invalid_argument for a pattern that fits
/// none, and std::runtime_error for an earlier report that cannot be read.
std::vector<Test> chosenTests(const Options& options, const std::vector<Test>& tests);

} // namespace ovra::conformance
