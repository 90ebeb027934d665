// SPDX-License-Identifier: MIT
/// \file
/// CommandProcessor: runs commands on the GUI thread and on its worker.
#pragma once

#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core {

class Command;

/// The application creates it; HarloApplication::commandprocessor() returns it.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(boost::make_shared<CountImages>());
/// \endcode
class OVRA_CORE_API CommandProcessor
{
public:
    virtual ~CommandProcessor();

    /// Runs \p command; keeps it alive until its last phase has returned.
    ///
    /// On the GUI thread a synchronous, clean-up or event command runs at once, even if a phase of another
    /// command submits it. An asynchronous command that a phase submits is queued and starts after that phase
    /// has returned. On any other thread every command is queued for the GUI thread, in order, and the call
    /// does not wait.
    ///
    /// If a phase throws, the application's error handler gets the exception. If the synchronous phase
    /// throws, the asynchronous phase is skipped. The post-asynchronous phase runs in any case.
    ///
    /// \throws std::logic_error  if this object was submitted before and has not run its last phase
    virtual void executeCommand(boost::shared_ptr<Command> command) = 0;

    /// GUI thread. Waits for the running asynchronous phase, starts no further one, runs the
    /// post-asynchronous phase of every command whose synchronous phase ran, and returns. After that no phase
    /// runs, and new commands are dropped.
    virtual void terminateAsyncCommands() = 0;
};

} // namespace ovra::core
