// SPDX-License-Identifier: MIT
/// \file
/// Viewer: keeps the state document and answers the requests of pages. ViewerViews passes the library's calls
/// to it.
#pragma once

#include "ChannelImages.h"
#include "LogLines.h"
#include "MachineState.h"
#include "PrivateFolder.h"
#include "Question.h"
#include "Recordings.h"
#include "images/ImageFeeds.h"
#include "server/StateDocument.h"
#include "server/WebServer.h"

#include "front-ends/shared/EventCounter.h"
#include "front-ends/shared/ProblemReport.h"
#include "front-ends/shared/RecentMessages.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ovra::core {
class Command;
}

namespace ovra::viewer {

/// Severity of a notice.
enum class Severity
{
    Error,
    Warning,
    Information
};

/// GUI thread, except functions marked otherwise.
class Viewer
{
public:
    struct Setup
    {
        reference::Application& application;
        std::function<void(const std::string&)> publish; ///< to all pages
        std::function<void(ClientId, std::string)> send;
        std::function<void(ClientId, std::string)> subscribe;
        std::function<std::size_t()> countClients; ///< pages that are open
        frontend::SessionOptions options;
    };

    Viewer(Setup setup, ImageFeeds& channels);
    ~Viewer();

    // From the network.
    void welcome(ClientId client);
    void handle(ClientId client, const Request& request);

    // From the library.
    void showSplash(const std::string& message);
    void beReady();
    void beginLoad();
    void setLoadedBoard(const std::string& caption);
    void setLoadedApplet(const std::string& name);
    void addLoadLine(Severity level, const std::string& text);
    void endLoad();
    void attachBoard(unsigned int serial);
    void dropUnloadedBoards();
    void setRescanning(bool rescanning);
    void refreshMachine();
    void refreshMemory();
    /// Shows a notice. An error also fails the requests in progress.
    void report(Severity level, const std::string& title, const std::string& text);
    Question& question() { return m_question; }

    /// Refreshes what changes without a call from the library. Called four times a second.
    void tick();

    // For requests.

    /// Submits \p command. The current request is answered when the command has ended.
    void run(const boost::shared_ptr<core::Command>& command);
    /// Runs \p work when the commands of the current request have ended.
    void afterwards(std::function<void()> work) { m_afterwards = std::move(work); }
    /// Throws RequestError during a load: the library would ignore a second one.
    void requireNoLoad() const;
    /// A file name with the current time, unique within this run.
    std::string readyName(const std::string& beginning, const std::string& ending);
    /// Writes \p text, at most 1 MiB, into a file that only this user can read, because library and runtime
    /// read files. The file exists until the current request has ended.
    std::filesystem::path storeUpload(const std::string& text, const std::string& ending);
    /// Tells all pages that parameters of the board have other values.
    void countParameterChange(const std::string& serial);
    void quit();
    ChannelImages& images() { return m_images; }
    StateDocument& state() { return m_state; }
    const reference::Application& application() const { return m_setup.application; }
    Recordings& recordings() { return m_recordings; }
    frontend::ReportContents reportContents() const;
    std::filesystem::path outputFolder() const;
    /// The output folder as an absolute path, for the user.
    std::string outputFolderText() const;

    // Any thread.
    LogLines& log() { return m_log; }
    /// Shared with event subscriptions, which may outlive the views.
    const std::shared_ptr<frontend::EventCounter>& events() { return m_events; }

private:
    struct Pending;

    void perform(ClientId client, const Request& request);
    void finishLater(const std::shared_ptr<Pending>& pending);
    void finish(const Pending& pending);
    void addNotice(Severity level, const std::string& title, const std::string& text);
    void watchEnds(const core::models::HlEnvironmentBoardNode& board);
    void fail(ClientId client, std::int64_t id, const std::string& text);
    std::string errorsSince(std::int64_t count) const;

    const Setup m_setup;
    StateDocument m_state;
    ChannelImages m_images;
    Recordings m_recordings;
    Question m_question;
    LogLines m_log;
    const std::shared_ptr<frontend::EventCounter> m_events;
    std::deque<std::string> m_errors; ///< the latest
    std::int64_t m_errorCount = 0;    ///< since the start
    frontend::RecentMessages m_recentErrors;
    std::int64_t m_noticeCount = 0;
    std::unique_ptr<const PrivateFolder> m_uploads; ///< null before the first upload
    std::function<void()> m_afterwards;
    int m_nameCount = 0;
    bool m_commandStarted = false; ///< by the request that is performed
    int m_ticks = 0;
    /// Of each board, by serial: the signals of its channels when an acquisition ends by itself.
    std::map<unsigned int, std::vector<boost::signals2::scoped_connection>> m_ends;
    const std::shared_ptr<Viewer> m_self{this, [](Viewer*) {}}; ///< tells posted work that the viewer exists
};

} // namespace ovra::viewer
