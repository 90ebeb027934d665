/// \file
/// StartAcquisitionCommand: starts a DMA channel or a camera, and what belongs to it.
///
/// \code
/// gui::Gui::setSyncMode(gui::Gui::SyncBoard); // the whole board
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::StartAcquisitionCommand::create(dma, -1)); // until it is stopped
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

/// Starts acquisition as far as Gui::getSyncMode reaches from the channel or port that is named.
///
///   - executeSync, GUI thread: compares image sizes of cameras and channels, process by process, and asks
///     through Views::showChoiceDialog where they differ. Not in mode SyncNone, nor where
///     keys::COMPARE_IMAGE_SIZES is 0
///   - executeAsync, worker: every channel in reach (DisplayScene::startGrabbing), then every camera
///   - executePostAsync, GUI thread: Views::update_acquisition_state, in any case
///
/// In mode SyncNone just what is named starts: a channel without its camera, or a camera without its channel.
///
/// Images go to the visualizer of each channel's scene. What acquires already is started anew. Channels
/// without a scene, ports without a camera and ports whose generator is on are skipped silently, and so is
/// all of it for a sync mode that does not exist. How an acquisition that ends by itself is noticed:
/// DisplayScene::isGrabbing.
///
/// Errors: an exception of the host (a channel that cannot start, a camera that does not answer) ends the
/// phase and goes to the error handler. What was started before it runs on; a StopAcquisitionCommand for the
/// same channel reaches it.
///
/// Before: "views" is injected, and the board is loaded.
class OVRA_GUI_CORE_API StartAcquisitionCommand : public ovra::core::Command
{
public:
    /// \param dma  the channel from which the sync mode reaches; null: nothing is started. Kept alive by the
    ///     command.
    /// \param grabArgument  number of images for each channel; negative: until it is stopped
    [[nodiscard]] static boost::shared_ptr<StartAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma, int grabArgument);
    /// \param port  the camera's port from which the sync mode reaches; null: nothing is started
    /// \param grabArgument  as above; cameras send until they are stopped
    [[nodiscard]] static boost::shared_ptr<StartAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port, int grabArgument);

    StartAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma,
                            int grabArgument);
    StartAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port,
                            int grabArgument);
    /// Copies share one request: submitting a copy is submitting the same command.
    StartAcquisitionCommand(const StartAcquisitionCommand& other);
    StartAcquisitionCommand& operator=(const StartAcquisitionCommand& other);
    ~StartAcquisitionCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
