/// \file
/// ApplicationSession: the library and an application in it, from start to end.
///
///     ApplicationSession session(options, [](const std::string& message) { ... });
///     if (session.start(views, std::chrono::minutes(5)))
///         ...                                  // submit commands, let session.application()'s loop run
///     session.stop();
#pragma once

#include "SessionOptions.h"

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace ovra::gui {
class Views;
}

namespace ovra::reference {
class Application;
}

namespace ovra::frontend {

/// The thread that makes it is the GUI thread and makes all calls. There is one at a time.
class ApplicationSession
{
public:
    /// Receives a line for each exception that leaves a command or the shut-down. GUI thread; must not throw.
    using ErrorHandler = std::function<void(const std::string& message)>;

    /// Starts the library and makes the application. Sets variables of the process, so call it before other
    /// threads start. What the start throws passes through; nothing stays started.
    ApplicationSession(const SessionOptions& options, ErrorHandler onError);
    /// Destroys the plug-in, then the application, and shuts the library down.
    ~ApplicationSession();
    ApplicationSession(const ApplicationSession&) = delete;
    ApplicationSession& operator=(const ApplicationSession&) = delete;

    /// Valid as long as the session.
    reference::Application& application();

    /// Gives \p views to the library, starts the application, lets its loop run until it is ready, and begins
    /// the scenario of the options; one that is refused goes to the handler. False when the application is
    /// not ready within \p limit. Call once.
    bool start(const boost::shared_ptr<gui::Views>& views, std::chrono::milliseconds limit);

    /// Waits for the command that is under way, unloads each board, and closes the application: at most
    /// \p limit for each of them. Does what it can in spite of errors, which go to the handler.
    void stop(std::chrono::milliseconds limit);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::frontend
