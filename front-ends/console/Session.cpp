#include "Session.h"

#include "ChoiceDialog.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "ImageCollection.h"
#include "LineParser.h"
#include "Lookup.h"
#include "Paths.h"
#include "Platform.h"
#include "Printer.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/UnloadAppletCommand.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

#include <exception>
#include <string_view>

namespace ovra::console {

namespace {

constexpr std::chrono::minutes MAX_START_TIME{5};

/// A start-up of the library, which counts even if it fails, and its shut-down.
class LibraryUse
{
public:
    explicit LibraryUse(Printer& printer) : m_printer(printer) {}
    ~LibraryUse()
    {
        if (!m_counted)
            return;
        try {
            OvraGuiCoreDeinit();
        } catch (const std::exception& error) {
            m_printer.error(error.what());
        }
    }
    LibraryUse(const LibraryUse&) = delete;
    LibraryUse& operator=(const LibraryUse&) = delete;

    void begin()
    {
        m_counted = true;
        OvraGuiCoreInit();
    }

private:
    Printer& m_printer;
    bool m_counted = false;
};

// The runtime and the log dispatcher read these when they are loaded, which the library's start-up may cause.
void exportOptions(const Options& options)
{
    if (!options.machine.empty())
        setEnvironmentVariable("OVRA_MACHINE", options.machine);
    if (options.logLevel)
        setEnvironmentVariable("OVRA_LOG_LEVEL", std::to_string(*options.logLevel));
}

std::string withoutNamespaces(const std::string& className)
{
    return className.substr(className.rfind(':') + 1); // all of it where there is none
}

void reportFailures(reference::Application& application, Printer& printer)
{
    application.setErrorHandler([&printer](const reference::PhaseFailure& failure) {
        printer.error(failure.message + " (" + withoutNamespaces(failure.command) + "::" + failure.phase +
                      ")");
    });
}

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

void unload(Console& console, const BoardNode& board)
{
    try {
        console.run(gui::commands::UnloadAppletCommand::create(static_cast<int>(board->getSerial())));
    } catch (const std::exception& error) {
        console.printer.error(error.what());
    }
}

// The clean-up command leaves boards as they are.
void unloadAll(Console& console)
{
    for (const auto& board : allBoards())
        if (board->getLoadedAppletEntry())
            unload(console, board);
}

bool startApplication(Console& console)
{
    const auto errorsBefore = console.printer.errorCount();
    console.application.startPlugins();
    const bool idle =
        console.application.pumpUntil([&] { return console.application.idle(); }, MAX_START_TIME);
    console.printer.endProgress();
    if (!idle)
        console.printer.error("the application is not ready after five minutes");
    return console.printer.errorCount() == errorsBefore;
}

void runApplication(const Options& options, Printer& printer, const LineSource& input, InputKind kind)
{
    // The order of these is the order of start and, backwards, of the end: the application destroys the
    // plug-in, then the library shuts down.
    LibraryUse library(printer);
    ImageCollection images;
    LineReader reader(input);
    ChoiceDialog dialog(printer,
                        kind == InputKind::Terminal ? [&] { return reader.next(); } : ChoiceDialog::User());
    reference::Application application({.runtimeDirectory = options.runtimeFolder,
                                        .runtimeLibrary = {},
                                        .configurationFile = options.configurationFile});
    library.begin();
    reader.serve(application);
    reportFailures(application, printer);

    const auto views = boost::make_shared<ConsoleViews>(printer, images, dialog);
    const boost::shared_ptr<gui::Gui> plugin(gui::Gui::createInstance(), gui::Gui::destroyInstance);
    application.addPlugin(plugin, {{"views", boost::shared_ptr<gui::Views>(views)}});

    Console console{application, printer, *views, dialog, images, pathOf(options.outputFolder)};
    if (startApplication(console)) {
        runLines(console, reader, kind);
        unloadAll(console);
    }
    application.stopPlugins();
}

} // namespace

bool runSession(const Options& options, Printer& printer, const LineSource& input, InputKind kind)
{
    exportOptions(options);
    runApplication(options, printer, input, kind);
    return printer.errorCount() == 0; // those of the shut-down included
}

} // namespace ovra::console
