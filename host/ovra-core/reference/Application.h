// SPDX-License-Identifier: MIT
/// \file
/// Application: makes this process an application, and runs its event loop.
///
///     Application application({.runtimeDirectory = installation});
///     application.addPlugin(plugin, {{"views", views}});
///     application.startPlugins();
///     application.pumpUntil([&] { return application.idle(); }, std::chrono::seconds(30));
///     ...
///     application.stopPlugins();
///
/// The thread that constructs the application is the GUI thread. It runs queued work in exec(),
/// processEvents() and pumpUntil(). One worker thread runs the asynchronous phases of commands.
#pragma once

#include "ovra-core/Export.h"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <chrono>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ovra::core {
class Plugin;
}

namespace ovra::reference {

struct ApplicationState;

/// Paths are UTF-8. On Windows both separators are accepted.
struct ApplicationOptions
{
    /// "": the parent of the folder of the ovra-core library.
    std::string runtimeDirectory = {};
    /// "": "bin/fglib5" below the runtime directory, with the platform's suffix.
    std::string runtimeLibrary = {};
    /// File of the configuration entries, one "key=integer" per line; "": in memory only. The first use of an
    /// entry reads the file, each change writes it. Other lines are logged as one warning, and kept.
    std::string configurationFile = {};
};

/// An exception that a phase of a command threw.
struct PhaseFailure
{
    std::string command; ///< the command's class
    std::string phase;   ///< "executeSync", "executeAsync" or "executePostAsync"
    std::string message; ///< the exception's text
    std::exception_ptr exception;
};

class OVRA_CORE_API Application
{
public:
    /// \throws std::logic_error  if the process already has an application
    explicit Application(const ApplicationOptions& options);
    Application() : Application(ApplicationOptions{}) {}
    /// GUI thread. Ends commands as CommandProcessor::terminateAsyncCommands() does, so that each command
    /// that began runs its last phase, and drops queued work.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The loop. GUI thread only; on other threads these functions throw std::logic_error. Exceptions thrown
    // by post()ed work propagate out of them; exceptions from commands go to the error handler. The loops may
    // be nested.

    /// Runs queued work until quit(). If quit() was called before, returns at once.
    void exec();
    /// Runs the work that is queued now, without waiting.
    void processEvents();
    /// Runs queued work until \p condition holds. Checks the condition after each piece of work and every few
    /// milliseconds.
    /// \return false if \p limit expired first
    bool pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    /// Any thread. Ends exec() after the current piece of work.
    void quit();
    /// Any thread. Queues \p work for the GUI thread.
    void post(std::function<void()> work);
    /// Any thread. Installs \p callback, for a front end with an event loop of its own. It is called when
    /// work is queued while the application's loop is not waiting, on the thread that queues it; the front
    /// end then calls processEvents() on the GUI thread. If it throws, the log says so, and the work stays
    /// queued. Empty: no callback.
    void setWakeUpCallback(std::function<void()> callback);

    /// GUI thread. Installs \p handler, which is called on the GUI thread for each failed phase, before the
    /// command's next phase. Without a handler, or if it throws, failures are logged as errors.
    void setErrorHandler(std::function<void(const PhaseFailure&)> handler);

    /// Any thread. True if every submitted command has run its last phase.
    bool idle() const;
    /// Any thread. True once terminateAsyncCommands(), or the end of the application, prevents further
    /// asynchronous phases.
    bool terminating() const;

    /// GUI thread. Adds \p plugin: calls its postConstruct, injects each of \p dependencies, calls
    /// postInjection.
    void addPlugin(const boost::shared_ptr<core::Plugin>& plugin,
                   const std::map<std::string, boost::any>& dependencies = {});
    std::vector<boost::shared_ptr<core::Plugin>> plugins() const;
    /// GUI thread. Submits the initialisation command of each plug-in. Returns while the asynchronous phase
    /// still runs: pumpUntil idle().
    void startPlugins();
    /// GUI thread. Runs the clean-up command of each plug-in, the last one first.
    void stopPlugins();
    /// Any thread. True between the plug-in manager's startMonitor() and stopMonitor().
    bool isMonitoringPlugins() const;

private:
    boost::shared_ptr<ApplicationState> m_state;
};

} // namespace ovra::reference
