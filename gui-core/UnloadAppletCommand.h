// SPDX-License-Identifier: MIT
/// \file
/// UnloadAppletCommand: unloads the applet of a board.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::UnloadAppletCommand::create(static_cast<int>(board->getSerial())));
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Stops and removes everything that LoadAppletCommand created on the board, removes its global resources,
/// and frees its handle; then calls Views::applet_unloaded and update_dma_memory. All work is in executeSync:
/// on the GUI thread, executeCommand returns when it is done. Blocks while acquisitions end.
///
/// Afterwards the board has no processes, channels, ports, models or loaded-applet entry, and no display
/// scene has a visualizer. Nodes that a front end still holds have no group and no scene. For a board without
/// an applet only the two callbacks come; for an unknown serial number nothing happens.
///
/// Errors: an exception from the host goes to the error handler; the steps before it stay done, and the
/// callbacks do not come. The command may be submitted again.
///
/// Do not submit it between Views::onLoadAppletStarted and Views::onLoadAppletFinished. The command does not
/// check that: it would destroy, on the GUI thread, what the load's worker is building.
///
/// Preconditions: "views" is injected.
class OVRA_GUI_CORE_API UnloadAppletCommand : public ovra::core::Command
{
public:
    /// \param boardSerial  serial number of the board, not its index
    [[nodiscard]] static boost::shared_ptr<UnloadAppletCommand> create(int boardSerial);

    explicit UnloadAppletCommand(int boardSerial);
    /// Copies share one request: submitting a copy is submitting the same command.
    UnloadAppletCommand(const UnloadAppletCommand& other);
    UnloadAppletCommand& operator=(const UnloadAppletCommand& other);
    ~UnloadAppletCommand() override;

    // For the command processor.
    void executeSync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
