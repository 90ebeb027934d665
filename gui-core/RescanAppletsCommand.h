// SPDX-License-Identifier: MIT
/// \file
/// RescanAppletsCommand: searches for boards, cameras and applet files again.
///
/// Submit it after changes that the host's monitor does not report: files that changed while it was off, or
/// boards and cameras with a runtime that does not report their changes. Each load submits one at its end.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// One search:
///
///   - executeSync, GUI thread: Views::setRescanInProgress(true)
///   - executeAsync, worker: Environment::discoverResourcesOnce
///   - executePostAsync, GUI thread: Views::setRescanInProgress(false), in any case
///
/// Afterwards the model is up to date. Nodes of boards, files and cameras that still exist stay the same
/// objects.
///
/// Errors: if the runtime or the hardware description cannot be used, the host's std::runtime_error goes to
/// the error handler, and the model does not change.
///
/// Preconditions: "views" is injected. Several may be submitted; they run one after the other.
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
