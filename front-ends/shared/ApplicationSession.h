// SPDX-License-Identifier: MIT
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

/// The thread that constructs it is the GUI thread and makes all calls. Only one may exist at a time.
class ApplicationSession
{
public:
    /// Receives a line for each exception from a command or the shut-down. GUI thread; must not throw.
    using ErrorHandler = std::function<void(const std::string& message)>;

    /// Starts the library and creates the application. Sets environment variables, so call it before other
    /// threads start. Exceptions from the start propagate; then nothing stays started.
    ApplicationSession(const SessionOptions& options, ErrorHandler onError);
    /// Destroys the plug-in, then the application, and shuts the library down.
    ~ApplicationSession();
    ApplicationSession(const ApplicationSession&) = delete;
    ApplicationSession& operator=(const ApplicationSession&) = delete;

    /// Valid as long as the session exists.
    reference::Application& application();

    /// Injects \p views into the library, starts the application, runs its loop until it is ready, and starts
    /// the scenario of the options. False if the application is not ready within \p limit or the scenario is
    /// invalid; the error handler has reported it. Call once.
    bool start(const boost::shared_ptr<gui::Views>& views, std::chrono::milliseconds limit);

    /// Waits for the running command, unloads each board, and closes the application, with at most \p limit
    /// for each step. Continues after errors, which go to the error handler.
    void stop(std::chrono::milliseconds limit);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::frontend
