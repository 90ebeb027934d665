/// \file
/// The program's command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ovra::console {

/// Texts are paths; empty where not given.
struct Options
{
    std::string script;
    std::string outputFolder;
    std::string machine;
    std::string runtimeFolder;
    std::string configurationFile;
    std::optional<int> logLevel;
};

/// \p arguments are the words behind the program's name. Empty when the program has done all it should: \p
/// exitCode says how it ended.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

} // namespace ovra::console
