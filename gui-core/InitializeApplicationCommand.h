/// \file
/// InitializeApplicationCommand: brings the application from a freshly loaded plug-in to readiness.
///
/// The application runs it by itself at its start, by way of Gui::createInitializationApplicationCommand. A
/// front end does not submit it.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Finds out what the machine has and lets the front end set itself up. Run once.
///
///   - executeSync, GUI thread: the host's log starts; Views::onInitializeBegin; log messages are forwarded;
///     onLoggingInstalled, onInitializeSync
///   - executeAsync, worker: boards, cameras and applet files are looked for, every file is scanned; then new
///     files are scanned by themselves, and the monitors run
///   - executePostAsync, GUI thread: Views::fillCaches, onInitializationDone
///
/// Views::showSplashscreenMessage tells the progress of all three, always on the GUI thread. A machine with
/// many applet files takes seconds: the worker reads each.
///
/// Errors: an exception of the host ends its phase and goes to the error handler. executePostAsync runs
/// nevertheless. Where discovery failed, the model has what was found by then, and neither automatic scanning
/// nor monitors are on. A broken applet file is no error: HlEnvironmentFileNode::getBrokenReason tells of it.
///
/// Before: "views" is injected; without it the process ends at a null pointer. Sets the environment variable
/// OVRA_ENABLE_DRA of the process.
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
