/// \file
/// CleanupApplicationCommand: brings the application to rest.
///
/// The application runs it by itself at its end, by way of Gui::createCleanupApplicationCommand. A front end
/// does not submit it.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Ends what InitializeApplicationCommand began. All of it in executeSync, on the GUI thread, in this order:
///
///   1. the environment's monitor stops, and every camera's model is released
///   2. log messages are no longer forwarded, then Views::onCleanup
///   3. the plug-in manager's monitor stops
///   4. asynchronous commands are ended: one that runs comes to its last phase, others do not begin. This can
///      take as long as that phase takes.
///   5. the host's log stops
///
/// Boards, applets and acquisitions are left alone: who wants them at rest stops and unloads them before.
///
/// Errors: an exception of the host leaves the later steps undone and goes to the error handler. The command
/// may be run again: every step may be repeated.
///
/// Before: "views" is injected. Afterwards no phase of any command runs, and submitted commands are dropped.
/// The front end may be destroyed in onCleanup or later.
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
