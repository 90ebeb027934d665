// SPDX-License-Identifier: MIT
/// \file
/// Processor: the application's command processor.
///
/// The states of a three-phase command:
///
///     submitted --> begun ------------> on the worker --> finished
///                   (executeSync)       (executeAsync)    (executePostAsync)
///                     |  failed, or terminated meanwhile     ^
///                     +--------------------------------------+
#pragma once

#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/reference/Application.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <list>
#include <mutex>
#include <set>
#include <thread>

namespace ovra::reference {

class WorkQueue;

class Processor final : public core::CommandProcessor
{
public:
    /// On the GUI thread. \p queue must outlive shutDown().
    explicit Processor(WorkQueue& queue);

    void executeCommand(boost::shared_ptr<core::Command> command) override;
    void terminateAsyncCommands() override;

    void setErrorHandler(std::function<void(const PhaseFailure&)> handler);
    bool idle() const;
    bool terminating() const;
    bool onGuiThread() const;
    /// Like terminateAsyncCommands(), for the host itself: the journal does not record it.
    void finishAll();
    /// GUI thread. Ends the worker and drops the phases that have not run.
    void shutDown();

private:
    using Phase = void (core::Command::*)();

    /// A three-phase command, from the start of its synchronous phase.
    struct Running
    {
        boost::shared_ptr<core::Command> command;
        std::exception_ptr asyncFailure; // written on the worker, read once it has handed the command back
    };
    using RunningCommands = std::list<Running>;

    /// False if the object is already submitted and has not finished.
    bool open(const core::Command& command);
    void close(const core::Command& command);

    void submit(const boost::shared_ptr<core::Command>& command);
    void runSynchronous(core::Command& command);
    void begin(const boost::shared_ptr<core::Command>& command);
    void finish(RunningCommands::iterator running);
    void finishIfRunning(const Running* running);

    /// False if the phase threw; the error handler has been called then.
    bool runPhase(core::Command& command, Phase phase, const char* name);
    void leavePhase();
    void report(const core::Command& command, const char* phase, const std::exception_ptr& exception);

    void work();
    /// Prevents the worker from starting another phase, and waits for the running one.
    void stopWorker();

    WorkQueue& m_queue;
    const std::thread::id m_guiThread;
    mutable std::mutex m_openMutex;
    std::set<const core::Command*> m_open; // submitted and not yet finished
    // If set, no three-phase command begins and no asynchronous phase starts. Set under the worker's mutex,
    // so that the worker starts no further phase after it.
    std::atomic<bool> m_terminating{false};
    std::atomic<bool> m_terminated{false}; // no phase runs

    // GUI thread only.
    std::function<void(const PhaseFailure&)> m_errorHandler;
    RunningCommands m_running;
    std::deque<boost::shared_ptr<core::Command>>
        m_waiting;   // three-phase, queued until the current phase has returned
    int m_depth = 0; // phases on the GUI thread's stack

    std::mutex m_workerMutex;
    std::condition_variable m_workerChanged;
    std::list<Running*> m_forWorker;
    bool m_workerBusy = false;
    bool m_workerEnds = false;
    std::thread m_worker;
};

} // namespace ovra::reference
