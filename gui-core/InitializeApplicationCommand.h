// SPDX-License-Identifier: MIT
/// \file
/// InitializeApplicationCommand: starts the application.
///
/// The application runs it at its start, with Gui::createInitializationApplicationCommand. A front end does
/// not submit it.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Searches the machine for boards, cameras and applet files, and notifies the front end of each step. Run
/// once.
///
///   - executeSync, GUI thread: starts the host's log; Views::onInitializeBegin; installs the forwarding of
///     log messages; onLoggingInstalled, onInitializeSync
///   - executeAsync, worker: searches for boards, cameras and applet files, scans every file; then switches
///     on the automatic scan of new files and starts the monitors
///   - executePostAsync, GUI thread: Views::fillCaches, onInitializationDone
///
/// Views::showSplashscreenMessage reports the progress of all three, always on the GUI thread. With many
/// applet files this takes seconds, because the worker reads each file.
///
/// Errors: an exception from the host ends its phase and goes to the error handler; executePostAsync still
/// runs. If the search fails, the model has what was found before, and automatic scan and monitors stay off.
/// A broken applet file is not an error: HlEnvironmentFileNode::getBrokenReason describes it.
///
/// Preconditions: "views" is injected; without it the process ends at a null pointer. Sets the environment
/// variable OVRA_ENABLE_DRA of the process.
class OVRA_GUI_CORE_API InitializeApplicationCommand : public ovra::core::Command
{
public:
    /// GUI thread.
    [[nodiscard]] static boost::shared_ptr<InitializeApplicationCommand> create();

    InitializeApplicationCommand();
    InitializeApplicationCommand(const InitializeApplicationCommand& other);
    InitializeApplicationCommand& operator=(const InitializeApplicationCommand& other);
    ~InitializeApplicationCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;
};

} // namespace ovra::gui::commands
