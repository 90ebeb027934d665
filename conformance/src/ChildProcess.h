// SPDX-License-Identifier: MIT
/// \file
/// runChild: runs a program as a child process with a time limit.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace ovra::conformance {

enum class Ending
{
    Exited,     ///< with an exit code; on Windows a crash, too
    Terminated, ///< by a signal
    Overdue,    ///< ended by runChild after the time limit
};

struct ChildResult
{
    Ending ending;
    int code; ///< exit code or number of the signal
};

/// Runs \p program with \p arguments, writes its output to \p output, and waits for its end, at most for \p
/// limit.
///
/// \throws std::runtime_error  if it cannot be started
ChildResult runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                     const std::filesystem::path& output, std::chrono::milliseconds limit);

} // namespace ovra::conformance
