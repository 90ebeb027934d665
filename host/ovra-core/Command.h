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
/// The phases of one command never overlap. The default implementation of a phase does nothing. A command
/// keeps its arguments and what one phase leaves for the next; the processor keeps it alive until then.
///
/// \code
/// class CountImages : public core::Command
/// {
/// public:
///     CountImages() : Command(Command::Asynchronous) {}
///     void executeAsync() override { m_images = countOnDisk(); } // may take its time
///     void executePostAsync() override { m_label.show(m_images); }
/// };
/// \endcode
class OVRA_CORE_API Command
{
public:
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

    virtual void executeSync();
    virtual void unexecuteSync();
    virtual void executeAsync();
    virtual void executePostAsync();

    CommandType type() const;

private:
    CommandType m_type;
};

} // namespace ovra::core
