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
/// The phases of one command never overlap. A phase that is not overridden does nothing.
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
