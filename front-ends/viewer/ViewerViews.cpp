// SPDX-License-Identifier: MIT
#include "ViewerViews.h"

#include "Viewer.h"

#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/reference/BoardEvents.h"
#include "ovra_log/OvraLog.h"

#include <boost/make_shared.hpp>

#include <iostream>

namespace ovra::viewer {

void ViewerViews::onInitializeBegin() {}

void ViewerViews::onCleanup()
{
    m_initialized = false;
}

void ViewerViews::onLoggingInstalled() {}

void ViewerViews::onInitializeSync() {}

void ViewerViews::onInitializationDone()
{
    m_initialized = true;
    m_viewer.beReady();
}

void ViewerViews::showSplashscreenMessage(const std::string& message)
{
    m_viewer.showSplash(message);
}

void ViewerViews::onLoadAppletStarted()
{
    m_viewer.beginLoad();
}

void ViewerViews::onLoadAppletFinished()
{
    m_viewer.endLoad();
}

void ViewerViews::showLoadAppletError(const std::string& message)
{
    m_viewer.addLoadLine(Severity::Error, message);
}

void ViewerViews::showLoadAppletWarning(const std::string& message)
{
    m_viewer.addLoadLine(Severity::Warning, message);
}

void ViewerViews::showLoadAppletStatus(const std::string& message)
{
    m_viewer.addLoadLine(Severity::Information, message);
}

void ViewerViews::showLoadingBoard(const std::string& caption)
{
    m_viewer.setLoadedBoard(caption);
}

void ViewerViews::showLoadingApplet(const std::string& fileName)
{
    m_viewer.setLoadedApplet(fileName);
}

void ViewerViews::logMsgCallback(unsigned long level, unsigned long threadId, const char* file,
                                 unsigned int line, const char* text, unsigned int, const tOvraLogTag*, void*)
{
    m_viewer.log().add(level, threadId, file, line, text);
}

boost::shared_ptr<boost::signals2::scoped_connection>
ViewerViews::connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel> events)
{
    return boost::make_shared<boost::signals2::scoped_connection>(reference::BoardEvents::connect(
        events, [counter = m_viewer.events()](const reference::BoardEvent& event) {
            counter->count({event.board, event.name});
        }));
}

bool ViewerViews::isInitialized() const
{
    return m_initialized;
}

void ViewerViews::reservedSlot1() {}

void ViewerViews::reservedSlot2() {}

void ViewerViews::update_acquisition_state()
{
    m_viewer.refreshMachine();
}

void ViewerViews::applet_unloaded()
{
    m_viewer.dropUnloadedBoards();
}

// Comes at the end of every load, also of one that failed and left a board without channels.
void ViewerViews::ensure_board_selection(unsigned int board)
{
    m_viewer.attachBoard(board);
}

void ViewerViews::showErrorMessage(const std::string& title, const std::string& message)
{
    m_viewer.report(Severity::Error, title, message);
}

void ViewerViews::update_dma_memory()
{
    m_viewer.refreshMemory();
}

void ViewerViews::setRescanInProgress(bool inProgress)
{
    m_viewer.setRescanning(inProgress);
}

void ViewerViews::reservedSlot3() {}

int ViewerViews::showChoiceDialog(const std::string& title, const std::string& message,
                                  const std::string& button0, const std::string& button1,
                                  const std::string& button2, bool* remember)
{
    const auto answer = m_viewer.question().ask(title, message, {button0, button1, button2});
    *remember = answer.remember;
    if (!answer.given) {
        constexpr unsigned long WARNING = 1;
        const std::string text = "Nobody was there to answer '" + message + "': " + button2 + ".";
        const tOvraLogTag tag{0, "viewer"};
        OvraLogMessage(WARNING, __FILE__, __LINE__, text.c_str(), 1, &tag);
        std::cerr << "ovra-viewer: " << text << std::endl; // no page shows the log just now
    }
    return answer.button;
}

} // namespace ovra::viewer
