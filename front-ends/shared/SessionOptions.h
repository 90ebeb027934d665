/// \file
/// The command-line options that every front end has.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace ovra::frontend {

/// Texts are paths; empty where not given.
struct SessionOptions
{
    std::string outputFolder;
    std::string machine;
    std::string scenario; ///< the name alone of one that the installation brings, too
    std::string runtimeFolder;
    std::string configurationFile;
    std::optional<int> logLevel;
};

/// Adds --output-dir, --machine, --scenario, --runtime-dir, --config and --log-level to \p program, whose
/// parsing fills \p options. Both live until then.
void addSessionOptions(CLI::App& program, SessionOptions& options);

} // namespace ovra::frontend
