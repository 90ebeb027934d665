// SPDX-License-Identifier: MIT
/// \file
/// Commands that note their phases, and functions for tests of the command processor.
#pragma once

#include "conformance/HostUnderTest.h"
#include "conformance/Test.h"

#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ovra::conformance {

/// Notes of what happened, in order. Any thread.
class Notes
{
public:
    void add(const std::string& note);
    std::vector<std::string> all() const;
    /// The notes that begin with \p prefix.
    std::vector<std::string> of(const std::string& prefix) const;
    bool contains(const std::string& note) const;
    /// True if both exist and \p first came first.
    bool inOrder(const std::string& first, const std::string& second) const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_notes;
};

/// Notes "<name> sync", "<name> async", "<name> post", and "<name> released" at its end.
class NotedCommand : public core::Command
{
public:
    using Step = std::function<void()>;

    NotedCommand(std::shared_ptr<Notes> notes, std::string name, CommandType type);
    ~NotedCommand() override;
    NotedCommand(const NotedCommand&) = delete;
    NotedCommand& operator=(const NotedCommand&) = delete;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

    /// Called within the phases, after their notes.
    Step inSync, inAsync, inPost;

private:
    void run(const char* phase, const Step& step);

    const std::shared_ptr<Notes> m_notes; // shared, because a host may keep a command after the test's end
    const std::string m_name;
};

/// An application with nothing but commands. The calling thread is the GUI thread.
class CommandBench
{
public:
    explicit CommandBench(HostUnderTest& host);

    boost::shared_ptr<NotedCommand> make(const std::string& name, core::Command::CommandType type);
    /// Any thread.
    void submit(const boost::shared_ptr<core::Command>& command);
    /// Submits a command of type Asynchronous and waits until it is released.
    void runToTheEnd(boost::shared_ptr<NotedCommand> command, const std::string& name);
    void awaitNote(const std::string& note);
    bool onGuiThread() const { return std::this_thread::get_id() == m_guiThread; }

private:
    const std::shared_ptr<Notes> m_notes = std::make_shared<Notes>();

public:
    HostUnderTest& host;
    Notes& notes = *m_notes;

private:
    const std::thread::id m_guiThread = std::this_thread::get_id();
};

/// The types of a command whose only phase is executeSync, with their names.
struct SynchronousType
{
    core::Command::CommandType type;
    const char* name;
};
constexpr SynchronousType SYNCHRONOUS_TYPES[] = {{core::Command::Synchronous, "synchronous"},
                                                 {core::Command::Cleanup, "clean-up"},
                                                 {core::Command::Event, "event"}};

} // namespace ovra::conformance
