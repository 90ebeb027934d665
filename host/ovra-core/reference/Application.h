/// \file
/// Application: makes this process an application, and drives it.
///
///     Application application({.runtimeDirectory = installation});
///     application.addPlugin(plugin, {{"views", views}});
///     application.startPlugins();
///     application.pumpUntil([&] { return application.idle(); }, std::chrono::seconds(30));
///     ...
///     application.stopPlugins();
///
/// Threads: the one that makes the application is the GUI thread. It runs queued work in exec(),
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

/// Paths are UTF-8; both separators will do where the platform has two.
struct ApplicationOptions
{
    /// "": the folder above the one in which the ovra-core library lies.
    std::string runtimeDirectory;
    /// "": "bin/fglib5" below the runtime directory, with the platform's suffix.
    std::string runtimeLibrary;
    /// Where entries are kept, one "key=integer" a line; "": in memory only. The file is read at the first
    /// use of an entry and written at each change. A line that is no entry is logged as one warning, and
    /// kept.
    std::string configurationFile;
};

/// An exception that left a phase of a command.
struct PhaseFailure
{
    std::string command; ///< the command's class
    std::string phase;   ///< "executeSync", "executeAsync" or "executePostAsync"
    std::string message; ///< what the exception says
    std::exception_ptr exception;
};

class OVRA_CORE_API Application
{
public:
    /// Throws std::logic_error while there is another one.
    explicit Application(const ApplicationOptions& options);
    Application() : Application(ApplicationOptions{}) {}
    /// GUI thread. Ends commands as CommandProcessor::terminateAsyncCommands() does, so that each one that
    /// began comes to its last phase, and drops what is queued.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The loop: GUI thread only, std::logic_error elsewhere. What queued work throws comes out here; commands
    // throw nothing, their failures go to the error handler. The loop may run within a piece of its own work.

    /// Runs queued work until quit(). A quit() that came before ends it at once.
    void exec();
    /// Runs what is queued now, without waiting.
    void processEvents();
    /// Runs queued work until \p condition holds; false when \p limit passed first. The condition is looked
    /// at after each piece of work and every few milliseconds.
    bool pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    /// Any thread. Ends exec() after the work that is being done.
    void quit();
    /// Any thread. Queues \p work for the GUI thread.
    void post(std::function<void()> work);
    /// Any thread. \p callback is called, on the thread that queues it, for work that arrives while the loop
    /// is not waiting for it: a front end with a loop of its own then has processEvents() called. Empty:
    /// none.
    void setWakeUpCallback(std::function<void()> callback);

    /// GUI thread. \p handler is called there for each failed phase, before the command's next one. By
    /// default, and where the handler itself throws, failures are logged as errors.
    void setErrorHandler(std::function<void(const PhaseFailure&)> handler);

    /// Any thread. True when no command is queued or between its phases.
    bool idle() const;
    /// Any thread. True from the moment at which the termination of the asynchronous commands, or the end of
    /// the application, keeps further asynchronous phases from starting.
    bool terminating() const;

    /// GUI thread. Takes \p plugin up: postConstruct, each of \p dependencies, postInjection.
    void addPlugin(const boost::shared_ptr<core::Plugin>& plugin,
                   const std::map<std::string, boost::any>& dependencies = {});
    std::vector<boost::shared_ptr<core::Plugin>> plugins() const;
    /// GUI thread. Submits the initialisation command of each plug-in; its asynchronous phase runs on when
    /// this returns.
    void startPlugins();
    /// GUI thread. Runs the clean-up command of each plug-in, the last one first.
    void stopPlugins();
    /// Any thread. What the plug-in manager was last told.
    bool isMonitoringPlugins() const;

private:
    boost::shared_ptr<ApplicationState> m_state;
};

} // namespace ovra::reference
