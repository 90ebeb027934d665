/// \file
/// UnloadAppletCommand: takes the applet off a board.
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

/// Stops and detaches all that LoadAppletCommand put on the board, removes its global resources, and frees
/// its handle; then Views::applet_unloaded and update_dma_memory. All in executeSync: submitted on the GUI
/// thread, it is done when executeCommand returns. Blocks while acquisitions come to an end.
///
/// Afterwards the board has no processes, channels, ports, models or loaded-applet entry, and every display
/// scene has lost its visualizer. Nodes that a front end still holds have no group and no scene. A board
/// without an applet: the same, without effect, and the front end is told. A serial without a board: nothing
/// happens, and the front end is not told.
///
/// Errors: an exception of the host goes to the error handler; the steps before it stay done, the front end
/// is not told. The command may be submitted again.
///
/// Must not be submitted between Views::onLoadAppletStarted and Views::onLoadAppletFinished. The command does
/// not check that: it would take apart, on the GUI thread, what the load's worker is building. A front end
/// disables it.
///
/// Before: "views" is injected.
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
