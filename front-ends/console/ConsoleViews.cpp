// SPDX-License-Identifier: MIT
#include "ConsoleViews.h"

#include "ChoiceDialog.h"
#include "Descriptions.h"
#include "Printer.h"

#include "front-ends/shared/ImageCollection.h"
#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/Titles.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/reference/BoardEvents.h"

#include <boost/make_shared.hpp>

namespace ovra::console {

using namespace frontend;

ConsoleViews::ConsoleViews(Printer& printer, ImageCollection& images, ChoiceDialog& dialog)
    : m_printer(printer),
      m_images(images),
      m_dialog(dialog),
      m_events(std::make_shared<EventCounter>())
{}

void ConsoleViews::setLogShown(bool shown)
{
    m_logShown = shown;
}

std::map<CountedEvent, std::int64_t> ConsoleViews::eventCounts() const
{
    return m_events->counts();
}

void ConsoleViews::onInitializeBegin() {}

void ConsoleViews::onCleanup()
{
    m_initialized = false;
    m_printer.line("Application closed.");
}

void ConsoleViews::onLoggingInstalled() {}

void ConsoleViews::onInitializeSync() {}

void ConsoleViews::onInitializationDone()
{
    m_initialized = true;
}

void ConsoleViews::showSplashscreenMessage(const std::string& message)
{
    m_printer.progress(message);
}

void ConsoleViews::onLoadAppletStarted()
{
    m_configurationRefused = false;
}

void ConsoleViews::onLoadAppletFinished()
{
    m_printer.endProgress();
}

void ConsoleViews::showLoadAppletError(const std::string& message)
{
    m_printer.error(message);
}

void ConsoleViews::showLoadAppletWarning(const std::string& message)
{
    // The library reports a refused configuration as a warning only.
    m_configurationRefused = m_configurationRefused || message.starts_with("...Error loading MCF");
    m_printer.warning(message);
}

void ConsoleViews::showLoadAppletStatus(const std::string& message)
{
    m_printer.line(message);
}

void ConsoleViews::showLoadingBoard(const std::string& caption)
{
    m_caption = caption;
}

void ConsoleViews::showLoadingApplet(const std::string& fileName)
{
    m_printer.line("[" + m_caption + "] " + fileName);
}

void ConsoleViews::logMsgCallback(unsigned long level, unsigned long threadId, const char* file,
                                  unsigned int line, const char* text, unsigned int, const tOvraLogTag*,
                                  void*)
{
    constexpr unsigned long ERROR_LEVEL = 0;
    constexpr unsigned long WARNING_LEVEL = 1;
    m_recentLog.add(std::string(logLevelName(level)) + ": " + text);
    // Errors and warnings, such as a broken file, are shown even if the log is not.
    if (!m_logShown && level == ERROR_LEVEL)
        m_printer.error(text);
    if (!m_logShown && level == WARNING_LEVEL)
        m_printer.warning(text);
    if (!m_logShown)
        return;
    m_printer.line("log " + std::string(logLevelName(level)) + ": " + text + " (thread " +
                   std::to_string(threadId) + ", " + file + ":" + std::to_string(line) + ")");
}

boost::shared_ptr<boost::signals2::scoped_connection>
ConsoleViews::connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel> events)
{
    return boost::make_shared<boost::signals2::scoped_connection>(
        reference::BoardEvents::connect(events, [counter = m_events](const reference::BoardEvent& event) {
            counter->count({event.board, event.name});
        }));
}

void ConsoleViews::fillCaches() {}

bool ConsoleViews::isInitialized() const
{
    return m_initialized;
}

void ConsoleViews::reservedSlot1() {}

void ConsoleViews::reservedSlot2() {}

void ConsoleViews::update_acquisition_state()
{
    const auto all = acquiring();
    std::string list;
    for (const auto& each : all)
        list += (list.empty() ? "" : ", ") + each;
    m_printer.result("acquisition", {{"acquiring", all}},
                     list.empty() ? "Nothing acquires." : "Acquiring: " + list + ".");
}

void ConsoleViews::applet_unloaded()
{
    m_images.dropUnloaded();
}

// Called at the end of every load, also of a failed one, which leaves the board without channels.
void ConsoleViews::ensure_board_selection(unsigned int board)
{
    const auto node = boardOfSerial(board);
    if (!node)
        return;
    m_images.attach(node);
    markGenerators(node);
    tellEnds(*node);
}

// Subscribes to the ends of acquisitions, which come on the scenes' own threads.
void ConsoleViews::tellEnds(const core::models::HlEnvironmentBoardNode& board)
{
    std::erase_if(m_acquisitionEnds, [](const auto& connection) { return !connection.connected(); });
    for (const auto& dma : listOf(board.getDmas()))
        if (const auto scene = dma->getDisplayScene())
            m_acquisitionEnds.emplace_back(reference::AcquisitionObserver::connect(
                scene, [&printer = m_printer](const reference::AcquisitionStatus& status) {
                    // Of the others the log has warned in the same words.
                    if (status.state == reference::AcquisitionState::CountReached ||
                        printer.target() == Printer::Target::Objects)
                        printer.result("acquisitionEnded",
                                       {{"board", std::int64_t{status.board}},
                                        {"dma", std::int64_t{status.dma}},
                                        {"state", std::string(reference::textOf(status.state))}},
                                       status.reason);
                }));
}

void ConsoleViews::showErrorMessage(const std::string& title, const std::string& message)
{
    m_printer.error(title + ": " + message);
}

void ConsoleViews::update_dma_memory()
{
    const std::string text = memoryText();
    if (text != m_memory)
        m_printer.result("memory", memoryFields(), text);
    m_memory = text;
}

void ConsoleViews::setRescanInProgress(bool inProgress)
{
    if (inProgress)
        m_printer.status("Looking for boards and applets ...");
    else
        m_printer.endProgress();
}

void ConsoleViews::reservedSlot3() {}

int ConsoleViews::showChoiceDialog(const std::string& title, const std::string& message,
                                   const std::string& button0, const std::string& button1,
                                   const std::string& button2, bool* remember)
{
    const auto answer = m_dialog.ask(title + ": " + message, {button0, button1, button2});
    *remember = answer.remember;
    return answer.button;
}

} // namespace ovra::console
