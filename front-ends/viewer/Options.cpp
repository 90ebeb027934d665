// SPDX-License-Identifier: MIT
#include "Options.h"

#include "gui-core/Version.h"

#include <CLI/CLI.hpp>

namespace ovra::viewer {

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode)
{
    Options options;
    bool noBrowser = false;
    CLI::App program("Shows frame-grabber boards and their images in a browser on this machine.",
                     "ovra-viewer");
    program.set_version_flag("--version", "ovra-viewer " OVRA_GUI_CORE_VERSION);
    program
        .add_option("--port", options.port, "where the page is served; any free port where this one is taken")
        ->type_name("N")
        ->capture_default_str();
    program.add_flag("--no-browser", noBrowser, "prints the page's address and opens no browser");
    frontend::addSessionOptions(program, options.session);

    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // the last one first
    } catch (const CLI::ParseError& end) {
        exitCode = program.exit(end);
        return std::nullopt;
    }
    options.openBrowser = !noBrowser;
    return options;
}

} // namespace ovra::viewer
