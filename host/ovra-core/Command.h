// SPDX-License-Identifier: MIT
/// \file
/// Command: one action of the user or of the host, run in up to three phases.
#pragma once

#include "ovra-core/Export.h"

namespace ovra::core {

/// Base of every command. The command processor runs
///
///   | type         | on the GUI thread | on the worker  | on the GUI thread again |
///   |--------------|-------------------|----------------|-------------------------|
///   | Synchronous  | executeSync       |                |                         |
///   | Cleanup      | executeSync       |                |                         |
///   | Asynchronous | executeSync       | executeAsync   | executePostAsync        |
///   | Event        | executeSync       |                |                         |
///
/// The phases of one command never overlap. CommandProcessor::executeCommand says when they run, and what
/// follows an exception from one. The default implementation of a phase does nothing.
///
/// A command is an object for one submission. It keeps its arguments, and what one phase leaves for the next;
/// the processor keeps the command alive until its last phase has returned. Submit a new object each time.
///
/// A front end that needs commands of its own derives from Command and chooses
///
///   - Synchronous for work that is done at once
///   - Asynchronous for work that takes time: it goes into executeAsync, which must not touch windows
///   - Event for a message from a worker to the GUI thread: submit it in executeAsync
///
/// Cleanup is the type of the library's command for the end of the application. The processor treats these
/// three types without a worker phase alike.
///
/// \code
/// class CountImages : public core::Command
/// {
/// public:
///     CountImages() : Command(Command::Asynchronous) {}
///     void executeAsync() override { m_images = countOnDisk(); } // may take its time
///     void executePostAsync() override { std::cout << m_images << " images\n"; }
///
/// private:
///     int m_images = 0;
/// };
/// \endcode
class OVRA_CORE_API Command
{
public:
    /// The numbers are part of the interface; those between are not used.
    enum CommandType : int
    {
        Synchronous = 0,
        Cleanup = 1,
        Asynchronous = 3,
        Event = 5,
    };

    explicit Command(CommandType type);
    Command(const Command& other);
    Command& operator=(const Command& other);
    virtual ~Command();

    /// First phase, on the GUI thread. If it throws, executeAsync is skipped.
    virtual void executeSync();
    /// Reserved; keeps its place in the interface. The reference host does not call it.
    virtual void unexecuteSync();
    /// Second phase of an Asynchronous command, on the worker.
    virtual void executeAsync();
    /// Last phase of an Asynchronous command, on the GUI thread. It runs even if an earlier phase threw: end
    /// here what executeSync began.
    virtual void executePostAsync();

    CommandType type() const;

private:
    CommandType m_type;
};

} // namespace ovra::core
