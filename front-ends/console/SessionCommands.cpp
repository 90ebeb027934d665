// SPDX-License-Identifier: MIT
// Commands that control the session and its output.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Platform.h"
#include "Printer.h"
#include "WordWrap.h"

#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/ProblemReport.h"
#include "front-ends/shared/RequestError.h"

#include "gui-core/Version.h"
#include "ovra_log/OvraLog.h"

#include <algorithm>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr unsigned long INFORMATION_LEVEL = 2;

void printWrapped(Printer& printer, const std::string& text, std::size_t indent)
{
    constexpr int MIN_WIDTH = 40, MAX_WIDTH = 100;
    const int width = std::clamp(terminalColumns() - 1, MIN_WIDTH, MAX_WIDTH);
    for (const auto& line : wrapWords(text, indent, static_cast<std::size_t>(width)))
        printer.line(line);
}

void showHelp(Printer& printer, const ConsoleCommand& command)
{
    constexpr std::size_t INDENT = 4;
    if (printer.target() == Printer::Target::Objects)
        return printer.result("help", {{"usage", usageOf(command)}, {"text", std::string(command.help)}}, "");
    printer.line(usageOf(command));
    printWrapped(printer, command.help, INDENT);
}

void help(Console& console, const Arguments& arguments)
{
    if (arguments.count() > 0)
        return showHelp(console.printer, findCommand(arguments.text(0)));

    for (const auto& command : commandTable())
        showHelp(console.printer, command);
    printWrapped(console.printer,
                 "BOARD is a board's index or its serial, APPLET a file name, with folders before it where "
                 "needed. Put names with blanks in double quotes; # begins a comment.",
                 0);
}

void echo(Console& console, const Arguments& arguments)
{
    console.printer.line(arguments.joined());
}

void log(Console& console, const Arguments& arguments)
{
    const std::string text = arguments.joined();
    if (text == "on" || text == "off")
        return console.views.setLogShown(text == "on");
    const tOvraLogTag tag{0, "console"};
    OvraLogMessage(INFORMATION_LEVEL, __FILE__, __LINE__, text.c_str(), 1, &tag);
}

void report(Console& console, const Arguments& arguments)
{
    const bool withPaths = arguments.count() > 1;
    if (withPaths && arguments.text(1) != "with-paths")
        throw RequestError("a report is followed by 'with-paths' or nothing, not by '" + arguments.text(1) +
                           "'");
    const std::string& name = arguments.text(0);
    const std::string text = problemReport({.program = "ovra-console " OVRA_GUI_CORE_VERSION,
                                            .options = console.options,
                                            .errors = console.printer.recentErrors(),
                                            .log = console.views.recentLog()},
                                           withPaths);
    writeFile(console.outputFile(name), text);
    console.printer.result("report", {{"file", name}},
                           "Report written to " + name + ". Look through it before you send it.");
}

void quit(Console& console, const Arguments&)
{
    console.ended = true;
}

} // namespace

std::vector<ConsoleCommand> sessionCommands()
{
    return {
        {"log", "on | off | TEXT", "shows the messages of the log, or does not; or writes one", 1, ANY_NUMBER,
         log},
        {"echo", "[TEXT]", "prints a text", 0, ANY_NUMBER, echo},
        {"report", "FILE [with-paths]",
         "writes what a problem report needs: versions, platform, boards, structure, parameters, "
         "configuration, "
         "last errors and log messages; without user name and without paths outside the installation, unless "
         "asked",
         1, 2, report},
        {"help", "[COMMAND]", "explains all commands, or one", 0, 1, help},
        {"quit", "", "ends the session", 0, 0, quit},
    };
}

} // namespace ovra::console
