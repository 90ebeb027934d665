/// \file
/// CommandProcessor: runs commands on the GUI thread and on its worker.
#pragma once

#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core {

class Command;

/// Made by the application; reached through HarloApplication::commandprocessor().
class OVRA_CORE_API CommandProcessor
{
public:
    virtual ~CommandProcessor();

    /// Runs \p command; keeps it alive until its last phase has returned.
    ///
    /// On the GUI thread a synchronous, clean-up or event command runs at once, also from within a phase of
    /// another command; an asynchronous one submitted from within a phase is queued and starts after
    /// that phase has returned. On any other thread every command is queued for the GUI thread, in order, and
    /// the call does not wait.
    ///
    /// An exception that leaves a phase is handed to the application's error handler. When the synchronous
    /// phase fails, the asynchronous one is skipped; the post-asynchronous phase runs in every case.
    ///
    /// An object that was submitted before and has not run its last phase is refused with std::logic_error.
    virtual void executeCommand(boost::shared_ptr<Command> command) = 0;

    /// GUI thread. Lets the running asynchronous phase end, starts no other, runs the post-asynchronous phase
    /// of every command whose synchronous phase ran, and returns. After it no phase runs, and commands are
    /// dropped.
    virtual void terminateAsyncCommands() = 0;
};

} // namespace ovra::core
