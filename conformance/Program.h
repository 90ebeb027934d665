/// \file
/// The program around conformance tests: the main() of a host author is
///
///     int main(int argc, char** argv)
///     {
///         auto tests = ovra::conformance::standardTests();
///         tests.push_back({"clock-advances", "The host's clock advances", clockAdvances});
///         return ovra::conformance::runProgram(argc, argv, [] { return std::make_unique<MyHost>(); },
///         tests);
///     }
#pragma once

#include "conformance/HostUnderTest.h"
#include "conformance/Test.h"

#include <functional>
#include <memory>
#include <vector>

namespace ovra::conformance {

using HostMaker = std::function<std::unique_ptr<HostUnderTest>()>;

/// Runs the tests that the arguments choose (--help lists them), each in a process of its own, which is this
/// program again. Returns the exit code: 0 when each chosen test passed or was skipped, 1 when one did not,
/// 2 for arguments that make no sense.
int runProgram(int argc, char** argv, const HostMaker& makeHost, const std::vector<Test>& tests);

} // namespace ovra::conformance
