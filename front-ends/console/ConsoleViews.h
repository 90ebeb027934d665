// SPDX-License-Identifier: MIT
/// \file
/// ConsoleViews: prints the library's callbacks as lines of text.
#pragma once

#include "front-ends/shared/EventCounter.h"
#include "front-ends/shared/RecentMessages.h"

#include "gui-core/Views.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::frontend {
class ImageCollection;
}

namespace ovra::console {

class ChoiceDialog;
class Printer;

/// GUI thread, except logMsgCallback and connectFglibEvents. Printer, images and dialog must outlive it.
class ConsoleViews final : public gui::Views
{
public:
    ConsoleViews(Printer& printer, frontend::ImageCollection& images, ChoiceDialog& dialog);

    /// True: print all messages of the host's log. Initially it prints warnings and errors only.
    void setLogShown(bool shown);
    std::map<frontend::CountedEvent, std::int64_t> eventCounts() const;
    /// The last messages of the host's log, printed or not, the oldest first.
    std::vector<std::string> recentLog() const { return m_recentLog.all(); }
    /// True if the configuration of the last load was refused.
    bool configurationRefused() const { return m_configurationRefused; }

    void onInitializeBegin() override;
    void onCleanup() override;
    void onLoggingInstalled() override;
    void onInitializeSync() override;
    void onInitializationDone() override;
    void showSplashscreenMessage(const std::string& message) override;

    void onLoadAppletStarted() override;
    void onLoadAppletFinished() override;
    void showLoadAppletError(const std::string& message) override;
    void showLoadAppletWarning(const std::string& message) override;
    void showLoadAppletStatus(const std::string& message) override;
    void showLoadingBoard(const std::string& caption) override;
    void showLoadingApplet(const std::string& fileName) override;

    void logMsgCallback(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
                        const char* text, unsigned int tagCount, const tOvraLogTag* tags,
                        void* userData) override;
    boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel> events) override;

    void fillCaches() override;
    bool isInitialized() const override;
    void reservedSlot1() override;
    void reservedSlot2() override;
    void update_acquisition_state() override;
    void applet_unloaded() override;
    void ensure_board_selection(unsigned int board) override;
    void showErrorMessage(const std::string& title, const std::string& message) override;
    void update_dma_memory() override;
    void setRescanInProgress(bool inProgress) override;
    void reservedSlot3() override;
    int showChoiceDialog(const std::string& title, const std::string& message, const std::string& button0,
                         const std::string& button1, const std::string& button2, bool* remember) override;

private:
    void tellEnds(const core::models::HlEnvironmentBoardNode& board);

    Printer& m_printer;
    frontend::ImageCollection& m_images;
    ChoiceDialog& m_dialog;
    std::string m_caption;
    std::string m_memory; ///< the figures that were printed last
    bool m_initialized = false;
    bool m_configurationRefused = false;
    std::vector<boost::signals2::scoped_connection> m_acquisitionEnds;
    std::atomic<bool> m_logShown{false};
    frontend::RecentMessages m_recentLog{200};
    // Shared with the subscriptions, which may outlive the views.
    const std::shared_ptr<frontend::EventCounter> m_events;
};

} // namespace ovra::console
