/// \file
/// Viewer: the program's side of what the pages show. It keeps the state document, answers requests, and is
/// told by the library through ViewerViews what happens.
#pragma once

#include "ChannelImages.h"
#include "LogLines.h"
#include "MachineState.h"
#include "Question.h"
#include "images/Channels.h"
#include "server/StateDocument.h"
#include "server/WebServer.h"

#include "front-ends/shared/EventCounter.h"

#include <boost/shared_ptr.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ovra::core {
class Command;
}

namespace ovra::viewer {

/// What a notice is about; pages mark it accordingly.
enum class Level
{
    Error,
    Warning,
    Information
};

/// GUI thread, but for what says otherwise.
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
        std::filesystem::path outputFolder;
    };

    Viewer(Setup setup, Channels& channels);
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
    void addLoadLine(Level level, const std::string& text);
    void endLoad();
    void attachBoard(unsigned int serial);
    void dropUnloadedBoards();
    void setRescanning(bool rescanning);
    void refreshMachine();
    void refreshMemory();
    /// A notice for the user; an error is the outcome of the requests that are under way, too.
    void report(Level level, const std::string& title, const std::string& text);
    Question& question() { return m_question; }

    /// Some times a second: what changes without anybody telling.
    void tick();

    // For requests.

    /// Lets the application run \p command. The request that this is called in is answered when it has ended.
    void run(const boost::shared_ptr<core::Command>& command);
    /// \p work is done when the request that this is called in has been answered.
    void afterwards(std::function<void()> work) { m_afterwards = std::move(work); }
    /// A load that is submitted while another one runs would do nothing at all: throws RequestError then.
    void requireNoLoad() const;
    /// A name for a file of this moment, which no other file of this run has.
    std::string readyName(const std::string& beginning, const std::string& ending);
    void quit();
    ChannelImages& images() { return m_images; }
    StateDocument& state() { return m_state; }
    const std::filesystem::path& outputFolder() const { return m_setup.outputFolder; }

    // Any thread.
    LogLines& log() { return m_log; }
    /// Shared with subscriptions, which a board may hold longer than the library holds the views.
    const std::shared_ptr<frontend::EventCounter>& events() { return m_events; }

private:
    struct Pending;

    void perform(ClientId client, const Request& request);
    void finishLater(const std::shared_ptr<Pending>& pending);
    void finish(const Pending& pending);
    void fail(ClientId client, std::int64_t id, const std::string& text);

    const Setup m_setup;
    StateDocument m_state;
    ChannelImages m_images;
    Question m_question;
    LogLines m_log;
    const std::shared_ptr<frontend::EventCounter> m_events;
    std::vector<std::string> m_errors; ///< since the start
    std::int64_t m_noticeCount = 0;
    std::function<void()> m_afterwards;
    int m_nameCount = 0;
    bool m_commandStarted = false; ///< by the request that is performed
    int m_ticks = 0;
};

} // namespace ovra::viewer
