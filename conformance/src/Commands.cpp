// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "ovra-core/HarloApplication.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace ovra::conformance {

using core::Command;
using core::HarloApplication;

void Notes::add(const std::string& note)
{
    const std::lock_guard lock(m_mutex);
    m_notes.push_back(note);
}

std::vector<std::string> Notes::all() const
{
    const std::lock_guard lock(m_mutex);
    return m_notes;
}

std::vector<std::string> Notes::of(const std::string& prefix) const
{
    auto chosen = all();
    std::erase_if(chosen, [&](const std::string& note) { return !note.starts_with(prefix); });
    return chosen;
}

bool Notes::contains(const std::string& note) const
{
    const auto notes = all();
    return std::ranges::find(notes, note) != notes.end();
}

bool Notes::inOrder(const std::string& first, const std::string& second) const
{
    const auto notes = all();
    const auto place = std::ranges::find(notes, first);
    return std::find(place, notes.end(), second) != notes.end();
}

NotedCommand::NotedCommand(std::shared_ptr<Notes> notes, std::string name, CommandType type)
    : Command(type),
      m_notes(std::move(notes)),
      m_name(std::move(name))
{}

NotedCommand::~NotedCommand()
{
    m_notes->add(m_name + " released");
}

void NotedCommand::executeSync()
{
    run("sync", inSync);
}

void NotedCommand::executeAsync()
{
    run("async", inAsync);
}

void NotedCommand::executePostAsync()
{
    run("post", inPost);
}

void NotedCommand::run(const char* phase, const Step& step)
{
    m_notes->add(m_name + ' ' + phase);
    if (step)
        step();
}

CommandBench::CommandBench(HostUnderTest& tested) : host(tested)
{
    host.startApplication();
    if (!HarloApplication::commandprocessor())
        fail("Expected: an application with a command processor");
}

boost::shared_ptr<NotedCommand> CommandBench::make(const std::string& name, Command::CommandType type)
{
    return boost::make_shared<NotedCommand>(m_notes, name, type);
}

void CommandBench::submit(const boost::shared_ptr<Command>& command)
{
    HarloApplication::commandprocessor()->executeCommand(command);
}

void CommandBench::runToTheEnd(boost::shared_ptr<NotedCommand> command, const std::string& name)
{
    submit(std::move(command));
    awaitNote(name + " released");
}

void CommandBench::awaitNote(const std::string& note)
{
    const auto arrived = [&] { return notes.contains(note); };
    const auto deadline = std::chrono::steady_clock::now() + PATIENCE;
    while (!arrived()) {
        if (std::chrono::steady_clock::now() >= deadline)
            fail("Waited in vain for \"" + note + "\"; what happened: " + toText(notes.all()));
        host.processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace ovra::conformance
