/// \file
/// Runs a program as a user would, for tests that look at what it prints; posix/ and win32/ hold one source
/// each.
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

/// The exit code. Throws std::runtime_error when the program does not start or does not end by itself.
int runProgram(const ProgramRun& run);

} // namespace ovra::tests
