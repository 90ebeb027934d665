// SPDX-License-Identifier: MIT
/// \file
/// RecordingViews: a front end that records its calls and their threads.
#pragma once

#include "gui-core/Views.h"

#include <boost/make_shared.hpp>
#include <boost/signals2/signal.hpp>

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace ovra::tests {

/// Constructed on the GUI thread. Each call is one line: the operation's name, and its arguments in
/// parentheses.
class RecordingViews : public gui::Views
{
public:
    std::vector<std::string> lines() const { return copyOf(m_lines); }
    std::vector<std::string> logMessages() const { return copyOf(m_logMessages); }
    /// Lines of calls on another thread than the GUI thread, except the two operations that may.
    std::vector<std::string> callsOffTheGuiThread() const { return copyOf(m_strays); }

    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_lines.clear();
        m_logMessages.clear();
    }

    /// Called with each line, on the thread of the call. May throw.
    std::function<void(const std::string&)> onLine;
    /// All arguments of the newest log message except its text.
    std::tuple<unsigned long, unsigned long, std::string, unsigned int, unsigned int, const tOvraLogTag*,
               void*>
        lastLogArguments;
    /// Answer to the choice dialog.
    int choice = 2;
    bool remember = false;

    void onInitializeBegin() override { note("onInitializeBegin"); }
    void onCleanup() override { note("onCleanup"); }
    void onLoggingInstalled() override { note("onLoggingInstalled"); }
    void onInitializeSync() override { note("onInitializeSync"); }
    void onInitializationDone() override { note("onInitializationDone"); }
    void showSplashscreenMessage(const std::string& message) override { note("splash(" + message + ")"); }
    void onLoadAppletStarted() override { note("onLoadAppletStarted"); }
    void onLoadAppletFinished() override { note("onLoadAppletFinished"); }
    void showLoadAppletError(const std::string& message) override { note("error(" + message + ")"); }
    void showLoadAppletWarning(const std::string& message) override { note("warning(" + message + ")"); }
    void showLoadAppletStatus(const std::string& message) override { note("status(" + message + ")"); }
    void showLoadingBoard(const std::string& caption) override { note("board(" + caption + ")"); }
    void showLoadingApplet(const std::string& fileName) override { note("applet(" + fileName + ")"); }
    void logMsgCallback(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
                        const char* text, unsigned int tagCount, const tOvraLogTag* tags,
                        void* userData) override
    {
        const std::lock_guard lock(m_mutex);
        m_logMessages.emplace_back(text);
        lastLogArguments = {level, threadId, file, line, tagCount, tags, userData};
    }
    boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel>) override
    {
        note("connectFglibEvents", true);
        return boost::make_shared<boost::signals2::scoped_connection>(m_events.connect([] {}));
    }
    void fillCaches() override { note("fillCaches"); }
    void reservedSlot1() override { note("reservedSlot1"); }
    void reservedSlot2() override { note("reservedSlot2"); }
    void update_acquisition_state() override { note("update_acquisition_state"); }
    void applet_unloaded() override { note("applet_unloaded"); }
    void ensure_board_selection(unsigned int board) override
    {
        note("ensure_board_selection(" + std::to_string(board) + ")");
    }
    void showErrorMessage(const std::string& title, const std::string& message) override
    {
        note("showErrorMessage(" + title + "|" + message + ")");
    }
    void update_dma_memory() override { note("update_dma_memory"); }
    void setRescanInProgress(bool inProgress) override
    {
        note(inProgress ? "setRescanInProgress(true)" : "setRescanInProgress(false)");
    }
    void reservedSlot3() override { note("reservedSlot3"); }
    int showChoiceDialog(const std::string& title, const std::string& message, const std::string& button0,
                         const std::string& button1, const std::string& button2, bool* rememberFlag) override
    {
        note("choice(" + title + "|" + message + "|" + button0 + "|" + button1 + "|" + button2 + "|" +
             (*rememberFlag ? "true" : "false") + ")");
        *rememberFlag = remember;
        return choice;
    }

    /// Number of connections from connectFglibEvents that still exist.
    std::size_t eventConnections() const { return m_events.num_slots(); }

private:
    std::vector<std::string> copyOf(const std::vector<std::string>& kept) const
    {
        const std::lock_guard lock(m_mutex);
        return kept;
    }

    void note(const std::string& line, bool anyThread = false)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_lines.push_back(line);
            if (!anyThread && std::this_thread::get_id() != m_guiThread)
                m_strays.push_back(line);
        }
        if (onLine)
            onLine(line);
    }

    mutable std::mutex m_mutex;
    const std::thread::id m_guiThread = std::this_thread::get_id();
    std::vector<std::string> m_lines;
    std::vector<std::string> m_strays;
    std::vector<std::string> m_logMessages;
    boost::signals2::signal<void()> m_events;
};

} // namespace ovra::tests
