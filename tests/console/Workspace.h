/// \file
/// Workspace: a throw-away folder, and the console run in it.
#pragma once

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

class Workspace
{
public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Path of a file in the folder. Names are UTF-8.
    std::filesystem::path path(const std::string& name) const;
    /// Writes a file into the folder, and gives its path.
    std::filesystem::path write(const std::string& name, const std::string& content) const;

    /// \p input is what the program reads.
    Outcome run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                const std::string& input) const;
    /// The console with the lines of a session.
    Outcome console(const std::string& lines, const std::vector<std::string>& arguments = {}) const;

private:
    const std::filesystem::path m_folder;
};

} // namespace ovra::tests
