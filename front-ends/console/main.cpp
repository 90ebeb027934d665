// SPDX-License-Identifier: MIT
#include "Interrupts.h"
#include "LineEditor.h"
#include "Options.h"
#include "Platform.h"
#include "Printer.h"
#include "Session.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/Process.h"
#include "gui-core/Version.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

using namespace ovra::console;

constexpr int EXIT_CODE_OF_INTERRUPT = 130; // the shells' convention

std::shared_ptr<LineSource> linesOf(const std::shared_ptr<std::istream>& stream)
{
    return std::make_shared<FunctionSource>([stream, first = true](std::string& line) mutable {
        if (!std::getline(*stream, line))
            return false;
        constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF"; // that some editors put first
        if (std::exchange(first, false) && line.starts_with(BYTE_ORDER_MARK))
            line.erase(0, BYTE_ORDER_MARK.size());
        return true;
    });
}

bool runScript(const Options& options, Printer& printer, Interrupts& interrupts)
{
    const auto file = ovra::frontend::pathOf(options.script);
    const auto script = std::make_shared<std::ifstream>(file);
    std::error_code none; // ignored: opening the file reports the error
    if (!*script || std::filesystem::is_directory(file, none)) {
        printer.error("cannot read the script " + options.script);
        return false;
    }
    return runSession(options, printer, {linesOf(script), nullptr}, interrupts);
}

bool runTerminal(const Options& options, Printer& printer, Interrupts& interrupts)
{
    const auto editor = std::make_shared<LineEditor>(historyFile());
    printer.setAbovePrompt([editor](const std::string& text) { return editor->printAbove(text); },
                           errorsAreTerminal());
    const bool succeeded = runSession(options, printer, {editor, editor}, interrupts);
    printer.setAbovePrompt({}, false);
    return succeeded;
}

bool run(const Options& options, Printer& printer, Interrupts& interrupts, bool terminal)
{
    if (!options.script.empty())
        return runScript(options, printer, interrupts);
    if (terminal)
        return runTerminal(options, printer, interrupts);
    const std::shared_ptr<std::istream> input(&std::cin, [](std::istream*) {});
    return runSession(options, printer, {linesOf(input), nullptr}, interrupts);
}

int exitCodeOf(const Options& options, Printer& printer, Interrupts& interrupts, bool terminal)
{
    bool succeeded = false;
    try {
        succeeded = run(options, printer, interrupts, terminal);
    } catch (const std::exception& error) {
        printer.error(error.what());
    }
    if (!printer.canWrite()) {
        std::cerr << "error: the output cannot be written\n";
        succeeded = false;
    }
    if (interrupts.sessionEnds())
        return EXIT_CODE_OF_INTERRUPT;
    return succeeded ? EXIT_SUCCESS : EXIT_FAILURE;
}

Printer::Target targetOf(const Options& options)
{
    if (options.json)
        return Printer::Target::Objects;
    return outputIsTerminal() ? Printer::Target::Terminal : Printer::Target::Lines;
}

// By convention, any non-empty value of NO_COLOR switches colours off.
bool coloursWanted()
{
    const char* const refusal = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe): no other thread yet
    return !refusal || *refusal == '\0';
}

int runConsole(int argumentCount, char** arguments)
{
    if (const auto mismatch = ovra::gui::libraryMismatch(); !mismatch.empty()) {
        std::cerr << "error: " << mismatch << '\n';
        return EXIT_FAILURE;
    }
    prepareTerminal();
    int exitCode = EXIT_SUCCESS;
    const auto options =
        parseOptions(ovra::frontend::commandLineArguments(argumentCount, arguments), exitCode);
    if (!options)
        return exitCode;

    const bool terminal =
        options->script.empty() && !options->json && inputIsTerminal() && outputIsTerminal();
    static Interrupts interrupts(terminal); // signals come until the process ends
    ovra::frontend::handleSignals([](ovra::frontend::Signal signal) { interrupts.handle(signal); });
    Printer printer(std::cout, std::cerr, targetOf(*options));
    printer.setColours(coloursWanted() && outputIsTerminal(), coloursWanted() && errorsAreTerminal());
    return exitCodeOf(*options, printer, interrupts, terminal);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    try {
        return runConsole(argumentCount, arguments);
    } catch (const std::exception& error) {
        std::cerr << "error: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
