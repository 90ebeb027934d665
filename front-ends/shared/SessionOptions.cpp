// SPDX-License-Identifier: MIT
#include "SessionOptions.h"

#include <CLI/CLI.hpp>

namespace ovra::frontend {

void addSessionOptions(CLI::App& program, SessionOptions& options)
{
    constexpr int MAX_LOG_LEVEL = 10;
    program
        .add_option("--output-dir", options.outputFolder,
                    "folder for pictures and stored configurations, in place of the current one")
        ->type_name("DIR");
    program.add_option("--machine", options.machine, "description of the virtual machine")->type_name("FILE");
    program
        .add_option("--scenario", options.scenario,
                    "what goes wrong on the virtual machine, from the application's start on")
        ->type_name("FILE");
    program.add_option("--runtime-dir", options.runtimeFolder, "installation, in place of the program's own")
        ->type_name("DIR");
    program.add_option("--config", options.configurationFile, "where configuration entries are kept")
        ->type_name("FILE");
    program.add_option("--log-level", options.logLevel, "threshold of the diagnostic log: lower shows more")
        ->type_name("N")
        ->check(CLI::Range(0, MAX_LOG_LEVEL));
}

} // namespace ovra::frontend
