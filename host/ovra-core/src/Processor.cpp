// SPDX-License-Identifier: MIT
#include "Processor.h"

#include "WorkQueue.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace ovra::reference {

using core::Command;

namespace {

std::string messageOf(const std::exception_ptr& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an exception of unknown type";
    }
}

void logFailure(const PhaseFailure& failure)
{
    log(LogLevel::Error, failure.command + "::" + failure.phase + " failed: " + failure.message);
}

} // namespace

Processor::Processor(WorkQueue& queue)
    : m_queue(queue),
      m_guiThread(std::this_thread::get_id()),
      m_worker([this] { work(); })
{}

void Processor::executeCommand(boost::shared_ptr<Command> command)
{
    if (!command)
        throw std::invalid_argument("CommandProcessor::executeCommand: there is no command");
    const Command& record = *command;
    probe("CommandProcessor::executeCommand", ClassName{typeid(record)});

    if (m_terminated)
        return;
    if (!open(record))
        throw std::logic_error("CommandProcessor::executeCommand: this object of " +
                               readableName(typeid(record)) + " is still under way");
    if (onGuiThread() && (m_depth == 0 || command->type() != Command::Asynchronous))
        return submit(command);
    try {
        m_queue.post([this, command] { submit(command); });
    } catch (...) { // it is not submitted
        close(record);
        throw;
    }
}

void Processor::terminateAsyncCommands()
{
    probe("CommandProcessor::terminateAsyncCommands");
    if (!onGuiThread())
        throw std::logic_error("CommandProcessor::terminateAsyncCommands: for the GUI thread only");
    finishAll();
}

void Processor::finishAll()
{
    stopWorker();
    // If a synchronous phase calls this, its command is not in the list: it finishes when that phase returns.
    while (!m_running.empty())
        finish(m_running.begin());
    m_terminated = true;
}

void Processor::setErrorHandler(std::function<void(const PhaseFailure&)> handler)
{
    m_errorHandler = std::move(handler);
}

bool Processor::idle() const
{
    const std::lock_guard lock(m_openMutex);
    return m_open.empty();
}

bool Processor::open(const Command& command)
{
    const std::lock_guard lock(m_openMutex);
    return m_open.insert(&command).second;
}

void Processor::close(const Command& command)
{
    const std::lock_guard lock(m_openMutex);
    m_open.erase(&command);
}

bool Processor::terminating() const
{
    return m_terminating;
}

bool Processor::onGuiThread() const
{
    return std::this_thread::get_id() == m_guiThread;
}

void Processor::shutDown()
{
    m_terminated = true;
    {
        const std::lock_guard lock(m_workerMutex);
        m_terminating = true;
        m_forWorker.clear();
        m_workerEnds = true;
        m_workerChanged.notify_all();
    }
    m_worker.join();
    m_waiting.clear();
    m_running.clear();
}

void Processor::submit(const boost::shared_ptr<Command>& command)
{
    const bool threePhases = command->type() == Command::Asynchronous;
    if (m_terminated || (threePhases && m_terminating)) {
        close(*command);
        return;
    }
    try {
        if (!threePhases)
            runSynchronous(*command);
        else if (m_depth > 0) // only in an event loop that runs within a phase
            m_waiting.push_back(command);
        else
            begin(command);
    } catch (...) {
        close(*command);
        throw;
    }
}

void Processor::runSynchronous(Command& command)
{
    runPhase(command, &Command::executeSync, "executeSync");
    close(command);
}

void Processor::begin(const boost::shared_ptr<Command>& command)
{
    // Its places are made first: a command that has begun is also finished.
    RunningCommands begun{Running{command, {}}};
    std::list<Running*> forWorker{&begun.front()};
    const bool succeeded = runPhase(*command, &Command::executeSync, "executeSync");
    m_running.splice(m_running.end(), begun);
    if (!succeeded || m_terminating)
        return finish(std::prev(m_running.end()));
    const std::lock_guard lock(m_workerMutex);
    m_forWorker.splice(m_forWorker.end(), forWorker);
    m_workerChanged.notify_all();
}

void Processor::finish(RunningCommands::iterator running)
{
    // Remove it from the list first, so that the phase cannot finish the command a second time.
    RunningCommands finished;
    finished.splice(finished.begin(), m_running, running);
    Command& command = *running->command;
    if (running->asyncFailure)
        report(command, "executeAsync", running->asyncFailure);
    runPhase(command, &Command::executePostAsync, "executePostAsync");
    close(command);
}

void Processor::finishIfRunning(const Running* running)
{
    const auto found = std::find_if(m_running.begin(), m_running.end(),
                                    [running](const Running& each) { return &each == running; });
    if (found != m_running.end())
        finish(found);
}

bool Processor::runPhase(Command& command, Phase phase, const char* name)
{
    ++m_depth;
    std::exception_ptr failure;
    try {
        (command.*phase)();
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure)
        report(command, name, failure);
    leavePhase();
    return !failure;
}

void Processor::leavePhase()
{
    if (--m_depth > 0)
        return;
    while (!m_waiting.empty()) {
        m_queue.post([this, command = m_waiting.front()] { submit(command); });
        m_waiting.pop_front();
    }
}

void Processor::report(const Command& command, const char* phase, const std::exception_ptr& exception)
{
    const PhaseFailure failure{readableName(typeid(command)), phase, messageOf(exception), exception};
    if (!m_errorHandler)
        return logFailure(failure);
    try {
        m_errorHandler(failure);
    } catch (...) {
        logFailure(failure);
        log(LogLevel::Error, "The handler of this failure failed: " + messageOf(std::current_exception()));
    }
}

void Processor::work()
{
    std::unique_lock lock(m_workerMutex);
    for (;;) {
        m_workerChanged.wait(lock,
                             [this] { return m_workerEnds || (!m_terminating && !m_forWorker.empty()); });
        if (m_workerEnds)
            return;
        Running* const running = m_forWorker.front();
        m_forWorker.pop_front();
        m_workerBusy = true;
        lock.unlock();
        try {
            running->command->executeAsync();
        } catch (...) {
            running->asyncFailure = std::current_exception();
        }
        m_queue.post([this, running] { finishIfRunning(running); });
        lock.lock();
        m_workerBusy = false;
        m_workerChanged.notify_all();
    }
}

void Processor::stopWorker()
{
    std::unique_lock lock(m_workerMutex);
    m_terminating = true;
    m_forWorker.clear();
    m_workerChanged.wait(lock, [this] { return !m_workerBusy; });
}

} // namespace ovra::reference
