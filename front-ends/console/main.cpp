#include "Options.h"
#include "Platform.h"
#include "Printer.h"
#include "Session.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

namespace {

using namespace ovra::console;

bool runScript(const Options& options, Printer& printer)
{
    const std::filesystem::path file(options.script);
    std::error_code none; // a file that cannot be looked at cannot be opened either
    std::ifstream script(file);
    if (!script || std::filesystem::is_directory(file, none)) {
        printer.error("cannot read the script " + options.script);
        return false;
    }
    return runSession(options, printer, script, InputKind::Lines);
}

bool run(const Options& options, Printer& printer)
{
    if (!options.script.empty())
        return runScript(options, printer);
    const bool terminal = inputIsTerminal() && outputIsTerminal();
    return runSession(options, printer, std::cin, terminal ? InputKind::Terminal : InputKind::Lines);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    int exitCode = EXIT_SUCCESS;
    const auto options = parseOptions(argumentCount, arguments, exitCode);
    if (!options)
        return exitCode;

    prepareTerminal();
    Printer printer(std::cout, std::cerr,
                    outputIsTerminal() ? Printer::Target::Terminal : Printer::Target::Lines);
    try {
        return run(*options, printer) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        printer.error(error.what());
        return EXIT_FAILURE;
    }
}
