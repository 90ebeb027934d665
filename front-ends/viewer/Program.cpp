// SPDX-License-Identifier: MIT
#include "Program.h"

#include "Browser.h"
#include "Ticker.h"
#include "Viewer.h"
#include "ViewerViews.h"

#include "front-ends/shared/ApplicationSession.h"
#include "front-ends/shared/Paths.h"
#include "front-ends/shared/Process.h"

#include "ovra-core/reference/Application.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>

namespace ovra::viewer {

namespace {

constexpr std::chrono::minutes MAX_START_TIME{5};
constexpr std::chrono::seconds MAX_COMMAND_TIME{60};
constexpr std::chrono::milliseconds TICK{250};

/// The first signal ends the loop, the second ends the process.
class SignalEnd
{
public:
    SignalEnd()
    {
        frontend::handleSignals([this](frontend::Signal signal) {
            if (m_came.exchange(true) && signal != frontend::Signal::Hangup)
                frontend::endAtOnce(signal);
            const std::lock_guard lock(m_mutex);
            if (m_end)
                m_end();
        });
    }

    void set(std::function<void()> end)
    {
        const std::lock_guard lock(m_mutex);
        m_end = std::move(end);
        if (m_end && m_came)
            m_end();
    }

private:
    std::atomic<bool> m_came{false};
    std::mutex m_mutex;
    std::function<void()> m_end;
};

/// Never destroyed: a signal may arrive at any time.
SignalEnd& signalEnd()
{
    static SignalEnd& end = *new SignalEnd;
    return end;
}

void makeOutputFolder(const Options& options)
{
    if (!options.session.outputFolder.empty())
        std::filesystem::create_directories(frontend::pathOf(options.session.outputFolder));
}

void announce(const Options& options, const WebServer& server)
{
    if (options.port != 0 && server.port() != options.port)
        std::cerr << "Port " << options.port << " is taken, perhaps by another ovra-viewer; using "
                  << server.port() << ".\n";
    std::cout << "ovra-viewer: " << server.address() << std::endl;
}

std::unique_ptr<Browser> openBrowser(const WebServer& server)
{
    return std::make_unique<Browser>(server.address(), [] {
        std::cerr << "No browser could be opened; open the address above in one." << std::endl;
    });
}

/// Connects the viewer with the server. The application's loop runs it.
class Program
{
public:
    Program(const Options& options, frontend::ApplicationSession& session)
        : m_application(session.application()),
          m_viewer(
              {.application = m_application,
               .publish = [this](const std::string& text) { onServer(&WebServer::publish, text); },
               .send = [this](ClientId client,
                              std::string text) { onServer(&WebServer::answer, client, std::move(text)); },
               .subscribe =
                   [this](ClientId client, std::string text) {
                       onServer(&WebServer::subscribe, client, std::move(text));
                   },
               .countClients = [this] { return m_server ? m_server->clientCount() : 0; },
               .options = options.session},
              m_channels)
    {
        m_server = std::make_unique<WebServer>(options.port, m_channels, handlers());
        m_ticker = std::make_unique<Ticker>(TICK, [this] { postTick(); });
    }

    ~Program()
    {
        m_ticker.reset();
        m_server.reset(); // its thread uses the viewer
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    Viewer& viewer() { return m_viewer; }
    const WebServer& server() const { return *m_server; }

    /// Any thread.
    void endLater()
    {
        post([this] { m_viewer.quit(); });
    }

private:
    template <class Operation, class... Arguments>
    void onServer(Operation operation, Arguments&&... arguments)
    {
        if (m_server)
            ((*m_server).*operation)(std::forward<Arguments>(arguments)...);
    }

    WebServer::Handlers handlers()
    {
        return {.joined = [this](ClientId client) { post([this, client] { m_viewer.welcome(client); }); },
                .requested =
                    [this](ClientId client, const Request& request) {
                        post([this, client, request] { m_viewer.handle(client, request); });
                    },
                .refused = [this](const std::string& text) { m_viewer.log().addOwn(text); }};
    }

    /// Logs exceptions of the work, which would otherwise end the loop.
    void post(std::function<void()> work)
    {
        m_application.post([this, work = std::move(work)] {
            try {
                work();
            } catch (const std::exception& error) {
                m_viewer.log().addOwn(error.what());
            }
        });
    }

    /// Queues at most one tick, so that none pile up while the loop is busy.
    void postTick()
    {
        if (m_tickQueued.exchange(true))
            return;
        post([this] {
            m_tickQueued = false;
            m_viewer.tick();
        });
    }

    reference::Application& m_application;
    ImageFeeds m_channels;
    std::unique_ptr<WebServer> m_server; // before the viewer, which publishes while it is made
    Viewer m_viewer;
    std::atomic<bool> m_tickQueued{false};
    std::unique_ptr<Ticker> m_ticker;
};

} // namespace

bool runProgram(const Options& options)
{
    makeOutputFolder(options);
    SignalEnd& signals = signalEnd();
    Viewer* viewer = nullptr;
    frontend::ApplicationSession session(options.session, [&viewer](const std::string& message) {
        std::cerr << "ovra-viewer: " << message << '\n';
        if (viewer)
            viewer->report(Severity::Error, "Application", message);
    });
    Program program(options, session);
    viewer = &program.viewer();
    signals.set([&program] { program.endLater(); });
    announce(options, program.server());
    const auto browser = options.openBrowser ? openBrowser(program.server()) : nullptr;

    const bool ready = session.start(boost::make_shared<ViewerViews>(program.viewer()), MAX_START_TIME);
    if (ready)
        session.application().exec();
    signals.set({});
    session.stop(MAX_COMMAND_TIME);
    viewer = nullptr;
    return ready;
}

} // namespace ovra::viewer
