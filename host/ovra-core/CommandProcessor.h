// SPDX-License-Identifier: MIT
/// \file
/// CommandProcessor: runs commands on the GUI thread and on its one worker thread.
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

    /// Runs \p command; keeps it alive until its last phase has returned. Any thread.
    ///
    ///   | submitted on               | synchronous, clean-up, event | asynchronous             |
    ///   |----------------------------|------------------------------|--------------------------|
    ///   | the GUI thread, in a phase | runs at once                 | begins after that phase  |
    ///   | the GUI thread, otherwise  | runs at once                 | executeSync runs at once |
    ///   | another thread             | is queued                    | is queued                |
    ///
    /// "At once" is before the call returns. The queue is for the GUI thread and keeps the order; the call
    /// does not wait. Asynchronous phases run one at a time, in the order in which their commands began: a
    /// command that is submitted during a load begins at once, but its asynchronous phase waits for the
    /// load's.
    ///
    /// If a phase throws, the application's error handler gets the exception, on the GUI thread
    /// (reference::Application::setErrorHandler; without a handler it is logged). If the synchronous phase
    /// throws, the asynchronous phase is skipped. The post-asynchronous phase runs in any case.
    ///
    /// After terminateAsyncCommands a command is dropped without an error.
    ///
    /// \throws std::logic_error  if this object was submitted before and has not run its last phase
    /// \throws std::invalid_argument  if \p command is null
    virtual void executeCommand(boost::shared_ptr<Command> command) = 0;

    /// GUI thread. Waits for the running asynchronous phase, starts no further one, runs the
    /// post-asynchronous phase of every command whose synchronous phase ran, and returns. After that no phase
    /// runs, and new commands are dropped. The library's clean-up command calls it; a front end does not.
    /// \throws std::logic_error  on another thread
    virtual void terminateAsyncCommands() = 0;
};

} // namespace ovra::core
