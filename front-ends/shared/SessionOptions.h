// SPDX-License-Identifier: MIT
/// \file
/// The command-line options of every front end.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace ovra::frontend {

/// Texts are paths; empty: not given.
struct SessionOptions
{
    std::string outputFolder;
    std::string machine;
    std::string scenario; ///< a file, or the name of a scenario of the installation
    std::string runtimeFolder;
    std::string configurationFile;
    std::optional<int> logLevel;
};

/// Adds --output-dir, --machine, --scenario, --runtime-dir, --config and --log-level to \p program, which
/// fills \p options when it parses. Both must exist until then.
void addSessionOptions(CLI::App& program, SessionOptions& options);

} // namespace ovra::frontend
