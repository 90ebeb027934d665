// SPDX-License-Identifier: MIT
/// \file
/// Options: the program's command line.
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
    int jobs = 1;    ///< number of tests that run at the same time
    std::string run; ///< the test that this process has to run
};

/// \throws std::invalid_argument  that names the argument
Options parseOptions(int argc, char** argv);
std::string helpText();

/// The tests that \p options choose, in their order.
/// \throws std::invalid_argument  for a pattern that matches no test, or if no test is left
/// \throws std::runtime_error  if an earlier report cannot be read
std::vector<Test> chosenTests(const Options& options, const std::vector<Test>& tests);

} // namespace ovra::conformance
