// SPDX-License-Identifier: MIT
#include "Session.h"

#include "ChoiceDialog.h"
#include "CommandTable.h"
#include "Completion.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Interrupts.h"
#include "LineEditor.h"
#include "LineParser.h"
#include "Printer.h"

#include "front-ends/shared/ApplicationSession.h"
#include "front-ends/shared/ImageCollection.h"
#include "front-ends/shared/Paths.h"

#include "ovra-core/reference/Application.h"

#include <boost/make_shared.hpp>

#include <exception>
#include <future>
#include <string_view>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::minutes MAX_START_TIME{5};
constexpr std::chrono::seconds MAX_STOP_TIME{60};

void dropByteOrderMark(std::string& line)
{
    constexpr std::string_view MARK = "\xef\xbb\xbf";
    if (line.starts_with(MARK))
        line.erase(0, MARK.size());
}

void runLine(Console& console, const std::string& line, bool typed)
{
    try {
        const auto words = splitLine(line);
        if (!typed) // a script's comments are headings of the output
            console.printer.result("command", {{"line", line}}, (words.empty() ? "" : "> ") + line);
        if (words.empty())
            return;
        runCommand(console, words);
    } catch (const std::exception& error) {
        console.printer.error(error.what());
    }
    console.printer.endProgress();
}

void runScript(Console& console, LineReader& input)
{
    for (int number = 1; !console.ended && console.printer.canWrite(); ++number) {
        auto line = input.next("");
        if (!line)
            break;
        if (number == 1)
            dropByteOrderMark(*line);
        console.printer.setPlace("line " + std::to_string(number));
        runLine(console, *line, false);
    }
    console.printer.setPlace("");
}

void runTypedLines(Console& console, LineReader& input)
{
    while (!console.ended) {
        const auto line = input.next("ovra> ");
        if (!line)
            break;
        if (console.interrupts.commandEnds() && line->empty())
            console.printer.line("Ctrl-C again, or quit, ends the session.");
        runLine(console, *line, true);
    }
}

// Only the GUI thread may use the models. While it ends the session there are no completions.
Completer completerFor(reference::Application& application, const std::filesystem::path& folder)
{
    return [&application, folder](const std::string& line) {
        const auto answer = std::make_shared<std::promise<std::vector<std::string>>>();
        auto words = answer->get_future();
        application.post([answer, line, folder] { answer->set_value(completionsOf(line, folder)); });
        constexpr std::chrono::milliseconds MAX_WAIT{500};
        return words.wait_for(MAX_WAIT) == std::future_status::ready ? words.get()
                                                                     : std::vector<std::string>();
    };
}

void runLines(Console& console, LineReader& reader, LineEditor* editor)
{
    if (!editor)
        return runScript(console, reader);
    editor->setCompleter(completerFor(console.application, pathOf(console.options.outputFolder)));
    runTypedLines(console, reader);
    editor->setCompleter({});
}

bool startApplication(ApplicationSession& session, const boost::shared_ptr<ConsoleViews>& views,
                      Printer& printer)
{
    const auto errorsBefore = printer.errorCount();
    const bool started = session.start(views, MAX_START_TIME);
    printer.endProgress();
    return started && printer.errorCount() == errorsBefore;
}

} // namespace

bool runSession(const Options& options, Printer& printer, const SessionInput& input, Interrupts& interrupts)
{
    {
        ImageCollection images;
        LineReader reader(input.lines, interrupts);
        ChoiceDialog dialog(printer, input.editor
                                         ? [&](const std::string& prompt) { return reader.next(prompt); }
                                         : ChoiceDialog::User());
        ApplicationSession session(options.session,
                                   [&](const std::string& message) { printer.error(message); });
        reader.serve(session.application());

        const auto views = boost::make_shared<ConsoleViews>(printer, images, dialog);
        Console console{session.application(), printer, *views, dialog, images, interrupts, options.session};
        if (startApplication(session, views, printer))
            runLines(console, reader, input.editor.get());
        session.stop(MAX_STOP_TIME);
    }
    return printer.errorCount() == 0; // including errors of the shut-down
}

} // namespace ovra::console
