// SPDX-License-Identifier: MIT
/// \file
/// CleanupApplicationCommand: shuts the application down.
///
/// The application runs it at its end, with Gui::createCleanupApplicationCommand. A front end does not submit
/// it.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Ends what InitializeApplicationCommand started. It does all its work in executeSync, on the GUI thread, in
/// this order:
///
///   1. the environment's monitor stops, and every camera's model is released
///   2. log messages are no longer forwarded, then Views::onCleanup
///   3. the plug-in manager's monitor stops
///   4. asynchronous commands end: the running one finishes its phases, which may take a while; others do not
///      start
///   5. the host's log stops
///
/// It does not stop acquisitions and does not unload boards: do that before, if you want it.
///
/// Errors: an exception from the host goes to the error handler, and the later steps are not done. The
/// command may be run again: every step may be repeated.
///
/// Preconditions: "views" is injected. Afterwards no phase of any command runs, and submitted commands are
/// dropped. The front end may be destroyed in onCleanup or later.
class OVRA_GUI_CORE_API CleanupApplicationCommand : public ovra::core::Command
{
public:
    /// GUI thread.
    [[nodiscard]] static boost::shared_ptr<CleanupApplicationCommand> create();

    CleanupApplicationCommand();
    CleanupApplicationCommand(const CleanupApplicationCommand& other);
    CleanupApplicationCommand& operator=(const CleanupApplicationCommand& other);
    ~CleanupApplicationCommand() override;

    // For the command processor.
    void executeSync() override;
};

} // namespace ovra::gui::commands
