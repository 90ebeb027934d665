#include "Options.h"

#include <CLI/CLI.hpp>

namespace ovra::console {

namespace {

constexpr int MAX_LOG_LEVEL = 10;

} // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode)
{
    Options options;
    CLI::App program(
        "Loads applets onto frame-grabber boards and acquires images, by commands of one line each.\n"
        "Without a script the commands come from standard input; 'help' lists them.",
        "ovra-console");
    program.set_version_flag("--version", "ovra-console " OVRA_CONSOLE_VERSION);
    program.add_option("--script", options.script, "commands to carry out")->type_name("FILE");
    program
        .add_option("--output-dir", options.outputFolder,
                    "folder for pictures and stored configurations, in place of the current one")
        ->type_name("DIR");
    program.add_option("--machine", options.machine, "description of the virtual machine")->type_name("FILE");
    program.add_option("--runtime-dir", options.runtimeFolder, "installation, in place of the program's own")
        ->type_name("DIR");
    program.add_option("--config", options.configurationFile, "where configuration entries are kept")
        ->type_name("FILE");
    program.add_option("--log-level", options.logLevel, "threshold of the diagnostic log: lower shows more")
        ->type_name("N")
        ->check(CLI::Range(0, MAX_LOG_LEVEL));

    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // the last one first
    } catch (const CLI::ParseError& end) {
        exitCode = program.exit(end);
        return std::nullopt;
    }
    return options;
}

} // namespace ovra::console
