/// \file
/// RescanAppletsCommand: looks for boards and applet files again.
///
/// Needed where files were changed while the monitors did not run, and for boards and cameras, which no
/// monitor watches. Each load ends with one by itself.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// One pass of discovery.
///
///   - executeSync, GUI thread: Views::setRescanInProgress(true)
///   - executeAsync, worker: Environment::discoverResourcesOnce
///   - executePostAsync, GUI thread: Views::setRescanInProgress(false), in any case
///
/// Afterwards the model has boards, applet files and cameras as they are; nodes of what was there before stay
/// the same objects.
///
/// Errors: std::runtime_error of the host, where the runtime or the description of the hardware cannot be
/// used, goes to the error handler; the model keeps what it had.
///
/// Before: "views" is injected. Several may be submitted; they run one after the other.
class OVRA_GUI_CORE_API RescanAppletsCommand : public ovra::core::Command
{
public:
    /// Any thread.
    [[nodiscard]] static boost::shared_ptr<RescanAppletsCommand> create();

    RescanAppletsCommand();
    RescanAppletsCommand(const RescanAppletsCommand& other);
    RescanAppletsCommand& operator=(const RescanAppletsCommand& other);
    ~RescanAppletsCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;
};

} // namespace ovra::gui::commands
