// SPDX-License-Identifier: MIT
/// \file
/// StopAcquisitionCommand: stops a DMA channel or a camera, and those that the sync mode adds.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(gui::commands::StopAcquisitionCommand::create(dma));
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class HlEnvironmentDmaNode;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::gui::commands {

/// Stops the named channel or camera, and the others that Gui::getSyncMode includes.
///
///   - executeAsync, worker: every camera in reach, then every channel (DisplayScene::stopGrabbing), so that
///     no camera sends to a stopped channel
///   - executePostAsync, GUI thread: Views::update_acquisition_state, in any case
///
/// In mode SyncNone only the named object stops. The mode at the time of the stop counts: if a whole board
/// was started and one channel is stopped in mode SyncNone, the others keep running.
///
/// When update_acquisition_state comes, no visualizer of a stopped channel is running. Stopping a stopped
/// channel has no effect. Channels without a scene, ports without a camera, ports with a Camera Link camera
/// (getClCameraPresent), and ports whose generator is on are skipped silently.
///
/// Errors: an exception from the host ends the phase and goes to the error handler; the remaining cameras and
/// channels keep running. The command may be submitted again.
///
/// Preconditions: "views" is injected.
class OVRA_GUI_CORE_API StopAcquisitionCommand : public ovra::core::Command
{
public:
    /// \param dma  the channel to stop; null: nothing stops. The command keeps the node alive.
    [[nodiscard]] static boost::shared_ptr<StopAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma);
    /// \param port  the port of the camera to stop; null: nothing stops
    [[nodiscard]] static boost::shared_ptr<StopAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port);

    explicit StopAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma);
    explicit StopAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port);
    /// Copies share one request: submitting a copy is submitting the same command.
    StopAcquisitionCommand(const StopAcquisitionCommand& other);
    StopAcquisitionCommand& operator=(const StopAcquisitionCommand& other);
    ~StopAcquisitionCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
