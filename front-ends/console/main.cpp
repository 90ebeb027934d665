#include "Interrupts.h"
#include "Options.h"
#include "Platform.h"
#include "Printer.h"
#include "Session.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/Process.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <system_error>

namespace {

using namespace ovra::console;

constexpr int EXIT_CODE_OF_INTERRUPT = 130; // as shells have it

bool runScript(const Options& options, Printer& printer)
{
    const auto file = ovra::frontend::pathOf(options.script);
    const auto script = std::make_shared<std::ifstream>(file);
    std::error_code none; // a file that cannot be looked at cannot be opened either
    if (!*script || std::filesystem::is_directory(file, none)) {
        printer.error("cannot read the script " + options.script);
        return false;
    }
    const auto nextLine = [script](std::string& line) {
        return static_cast<bool>(std::getline(*script, line));
    };
    return runSession(options, printer, nextLine, InputKind::Lines);
}

bool run(const Options& options, Printer& printer)
{
    if (!options.script.empty())
        return runScript(options, printer);
    const bool terminal = inputIsTerminal() && outputIsTerminal();
    return runSession(options, printer, readInputLine, terminal ? InputKind::Terminal : InputKind::Lines);
}

int exitCodeOf(const Options& options, Printer& printer)
{
    bool succeeded = false;
    try {
        succeeded = run(options, printer);
    } catch (const std::exception& error) {
        printer.error(error.what());
    }
    if (interrupted())
        return EXIT_CODE_OF_INTERRUPT;
    return succeeded ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    prepareTerminal();
    int exitCode = EXIT_SUCCESS;
    const auto options =
        parseOptions(ovra::frontend::commandLineArguments(argumentCount, arguments), exitCode);
    if (!options)
        return exitCode;

    noteInterrupts();
    Printer printer(std::cout, std::cerr,
                    outputIsTerminal() ? Printer::Target::Terminal : Printer::Target::Lines);
    return exitCodeOf(*options, printer);
}
