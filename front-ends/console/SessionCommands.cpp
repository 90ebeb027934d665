// The session itself: help, text, log, end.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Printer.h"

#include "ovra_log/OvraLog.h"

namespace ovra::console {

namespace {

constexpr unsigned long INFORMATION_LEVEL = 2;

void showHelp(Printer& printer, const ConsoleCommand& command)
{
    printer.line(usageOf(command));
    printer.line(std::string("    ") + command.help);
}

void help(Console& console, const Arguments& arguments)
{
    if (arguments.count() > 0)
        return showHelp(console.printer, findCommand(arguments.text(0)));

    for (const auto& command : commandTable())
        showHelp(console.printer, command);
    console.printer.line(
        "BOARD is a board's index or its serial, APPLET a file name, with folders before it where needed. "
        "Names with blanks stand in double quotes; # begins a comment.");
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
        {"help", "[COMMAND]", "explains all commands, or one", 0, 1, help},
        {"quit", "", "ends the session", 0, 0, quit},
    };
}

} // namespace ovra::console
