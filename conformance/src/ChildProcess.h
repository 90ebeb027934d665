/// \file
/// This program once more, as a process of its own.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace ovra::conformance {

enum class Ending
{
    Exited,     ///< of its own accord; Windows tells a crash by the exit code only
    Terminated, ///< by a signal
    Overdue,    ///< ended by us when its time was over
};

struct ChildResult
{
    Ending ending;
    int code; ///< exit code or number of the signal
};

/// Runs \p program with \p arguments, writes what it prints to \p output, and waits for its end, but no
/// longer than \p limit. Throws std::runtime_error when it cannot be started.
ChildResult runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                     const std::filesystem::path& output, std::chrono::milliseconds limit);

} // namespace ovra::conformance
