// SPDX-License-Identifier: MIT
#include "Options.h"

#include "gui-core/Version.h"

#include <CLI/CLI.hpp>

namespace ovra::console {

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode)
{
    Options options;
    CLI::App program(
        "Loads applets onto frame-grabber boards and acquires images, by commands of one line each.\n"
        "Without a script the commands come from standard input; 'help' lists them.",
        "ovra-console");
    program.set_version_flag("--version", [] {
        return std::string("ovra-console " OVRA_GUI_CORE_VERSION "\novra-lib-gui-core ") +
               OvraGuiCoreVersion() + ", " + OvraGuiCoreAbi();
    });
    program.add_option("--script", options.script, "commands to carry out")->type_name("FILE");
    program.add_flag("--json", options.json, "prints one JSON object a line, for programs");
    frontend::addSessionOptions(program, options.session);

    try {
        // CLI11 expects the last argument first.
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& end) {
        exitCode = program.exit(end);
        return std::nullopt;
    }
    return options;
}

} // namespace ovra::console
