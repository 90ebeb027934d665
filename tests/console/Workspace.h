// SPDX-License-Identifier: MIT
/// \file
/// Workspace: a temporary folder, and runs of the console in it.
#pragma once

#include "tests/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ovra::tests {

struct Outcome
{
    int exitCode = 0;
    std::vector<std::string> lines; ///< what was printed, without line ends

    /// The lines that begin with \p start.
    std::vector<std::string> linesWith(const std::string& start) const;
    /// All lines, for the message of a failed test.
    std::string text() const;
};

class Workspace : public TemporaryFolder
{
public:
    /// Runs \p program with \p input as its standard input.
    Outcome run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                const std::string& input) const;
    /// Runs the console with the lines of a session.
    Outcome console(const std::string& lines, const std::vector<std::string>& arguments = {}) const;
};

} // namespace ovra::tests
