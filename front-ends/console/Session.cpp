#include "Session.h"

#include "ChoiceDialog.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Interrupts.h"
#include "LineParser.h"
#include "Printer.h"

#include "front-ends/shared/ApplicationSession.h"
#include "front-ends/shared/ImageCollection.h"
#include "front-ends/shared/Paths.h"

#include <boost/make_shared.hpp>

#include <exception>
#include <string_view>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::minutes MAX_START_TIME{5};
constexpr std::chrono::seconds MAX_COMMAND_TIME{60};

void dropByteOrderMark(std::string& line)
{
    constexpr std::string_view MARK = "\xef\xbb\xbf";
    if (line.starts_with(MARK))
        line.erase(0, MARK.size());
}

void runLine(Console& console, const std::string& line, InputKind kind)
{
    try {
        const auto words = splitLine(line);
        if (kind == InputKind::Lines) // comments head what they are about
            console.printer.line((words.empty() ? "" : "> ") + line);
        if (words.empty())
            return;
        runCommand(console, words);
    } catch (const std::exception& error) {
        console.printer.error(error.what());
    }
    console.printer.endProgress();
}

void runLines(Console& console, LineReader& input, InputKind kind)
{
    for (int number = 1; !console.ended && !interrupted(); ++number) {
        if (kind == InputKind::Terminal)
            console.printer.prompt("ovra> ");
        auto line = input.next();
        if (!line)
            break;
        if (number == 1)
            dropByteOrderMark(*line);
        if (kind == InputKind::Lines)
            console.printer.setPlace("line " + std::to_string(number));
        runLine(console, *line, kind);
    }
    console.printer.setPlace("");
    if (kind == InputKind::Terminal && !console.ended)
        console.printer.line(""); // the end of input left the cursor behind the prompt
}

bool startApplication(ApplicationSession& session, const boost::shared_ptr<ConsoleViews>& views,
                      Printer& printer)
{
    const auto errorsBefore = printer.errorCount();
    const bool idle = session.start(views, MAX_START_TIME);
    printer.endProgress();
    if (!idle)
        printer.error("the application is not ready after five minutes");
    return printer.errorCount() == errorsBefore;
}

void runApplication(const Options& options, Printer& printer, const LineSource& input, InputKind kind)
{
    ImageCollection images;
    LineReader reader(input);
    ChoiceDialog dialog(printer,
                        kind == InputKind::Terminal ? [&] { return reader.next(); } : ChoiceDialog::User());
    ApplicationSession session(options.session, [&](const std::string& message) { printer.error(message); });
    reader.serve(session.application());

    const auto views = boost::make_shared<ConsoleViews>(printer, images, dialog);
    Console console{
        session.application(), printer, *views, dialog, images, pathOf(options.session.outputFolder)};
    if (startApplication(session, views, printer))
        runLines(console, reader, kind);
    session.stop(MAX_COMMAND_TIME);
}

} // namespace

bool runSession(const Options& options, Printer& printer, const LineSource& input, InputKind kind)
{
    runApplication(options, printer, input, kind);
    return printer.errorCount() == 0; // those of the shut-down included
}

} // namespace ovra::console
