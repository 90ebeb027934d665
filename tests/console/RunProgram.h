// SPDX-License-Identifier: MIT
/// \file
/// runProgram: runs a program for tests of its output; posix/ and win32/ contain one source each.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ovra::tests {

struct ProgramRun
{
    std::filesystem::path program;
    std::vector<std::string> arguments; ///< UTF-8, without double quotes in them
    std::filesystem::path input;        ///< standard input
    std::filesystem::path output;       ///< standard output and error, in the order in which they are written
};

/// Returns the exit code. Throws std::runtime_error if the program does not start or is killed.
int runProgram(const ProgramRun& run);

} // namespace ovra::tests
