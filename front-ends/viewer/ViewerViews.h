// SPDX-License-Identifier: MIT
/// \file
/// ViewerViews: passes the library's calls of its front end to the viewer.
#pragma once

#include "gui-core/Views.h"

namespace ovra::viewer {

class Viewer;

/// The viewer must outlive it.
class ViewerViews final : public gui::Views
{
public:
    explicit ViewerViews(Viewer& viewer) : m_viewer(viewer) {}

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
    Viewer& m_viewer;
    bool m_initialized = false;
};

} // namespace ovra::viewer
