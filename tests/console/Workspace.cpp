// SPDX-License-Identifier: MIT
#include "Workspace.h"

#include "RunProgram.h"

#include <fstream>

namespace ovra::tests {

namespace {

std::vector<std::string> readLines(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

} // namespace

std::vector<std::string> Outcome::linesWith(const std::string& start) const
{
    auto found = lines;
    std::erase_if(found, [&](const auto& line) { return !line.starts_with(start); });
    return found;
}

std::string Outcome::text() const
{
    std::string all = "exit code " + std::to_string(exitCode) + "\n";
    for (const auto& line : lines)
        all += "| " + line + "\n";
    return all;
}

Outcome Workspace::run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const std::string& input) const
{
    const ProgramRun run{program, arguments, write("input", input), path("output")};
    Outcome outcome;
    outcome.exitCode = runProgram(run);
    outcome.lines = readLines(run.output);
    return outcome;
}

Outcome Workspace::console(const std::string& lines, const std::vector<std::string>& arguments) const
{
    return run(OVRA_CONSOLE, arguments, lines);
}

} // namespace ovra::tests
