// SPDX-License-Identifier: MIT
/// \file
/// runProgram: the main program of conformance tests. A host author writes
///
///     int main(int argc, char** argv)
///     {
///         auto tests = ovra::conformance::standardTests();
///         tests.push_back({"clock-advances", "The host's clock advances", clockAdvances});
///         const auto host = [] { return std::make_unique<MyHost>(); };
///         return ovra::conformance::runProgram(argc, argv, host, tests);
///     }
#pragma once

#include "conformance/HostUnderTest.h"
#include "conformance/Test.h"

#include <functional>
#include <memory>
#include <vector>

namespace ovra::conformance {

using HostMaker = std::function<std::unique_ptr<HostUnderTest>()>;

/// Runs the tests that the arguments choose (--help lists them), each in a new process of this program.
/// \return the exit code: 0 if each chosen test passed or was skipped, 1 if one did not, 2 for invalid
/// arguments, an unwritable report, or two tests with one name
int runProgram(int argc, char** argv, const HostMaker& makeHost, const std::vector<Test>& tests);

} // namespace ovra::conformance
