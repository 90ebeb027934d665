/// \file
/// StopAcquisitionCommand: stops a DMA channel or a camera, and what belongs to it.
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

/// Stops acquisition as far as Gui::getSyncMode reaches from the channel or port that is named.
///
///   - executeAsync, worker: every camera in reach, then every channel (DisplayScene::stopGrabbing), so that
///     no camera sends to a channel that has stopped
///   - executePostAsync, GUI thread: Views::update_acquisition_state, in any case
///
/// In mode SyncNone just what is named stops. The mode counts at the time of the stop: what was started as a
/// whole board and is stopped as a single channel leaves the others running.
///
/// When update_acquisition_state comes, no visualizer of a stopped channel is being called any more. What
/// does not acquire is stopped without effect; channels without a scene, ports without a camera and ports
/// whose generator is on are skipped silently.
///
/// Errors: an exception of the host ends the phase and goes to the error handler; what was not reached before
/// it still runs. The command may be submitted again.
///
/// Before: "views" is injected.
class OVRA_GUI_CORE_API StopAcquisitionCommand : public ovra::core::Command
{
public:
    /// \param dma  the channel from which the sync mode reaches; null: nothing is stopped. Kept alive by the
    ///     command.
    [[nodiscard]] static boost::shared_ptr<StopAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma);
    /// \param port  the camera's port from which the sync mode reaches; null: nothing is stopped
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
