/// \file
/// Workspace: a throw-away folder, and the console run in it.
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
    /// \p input is what the program reads.
    Outcome run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                const std::string& input) const;
    /// The console with the lines of a session.
    Outcome console(const std::string& lines, const std::vector<std::string>& arguments = {}) const;
};

} // namespace ovra::tests
