// SPDX-License-Identifier: MIT
/// \file
/// StartAcquisitionCommand: starts a DMA channel or a camera, and those that the sync mode adds.
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

/// Starts the named channel or camera, and the others that Gui::getSyncMode includes.
///
///   - executeSync, GUI thread: compares image sizes of cameras and channels, process by process. If they
///     differ, asks with Views::showChoiceDialog. Skipped in mode SyncNone, and if keys::COMPARE_IMAGE_SIZES
///     is 0
///   - executeAsync, worker: every channel in reach (DisplayScene::startGrabbing), then every camera
///   - executePostAsync, GUI thread: Views::update_acquisition_state, in any case
///
/// In mode SyncNone only the named object starts: a channel without its camera, or a camera without its
/// channel.
///
/// Images go to the visualizer of each channel's scene. A running acquisition ends and starts again, with
/// image number 1; so does the camera. Channels without a scene, ports without a camera, and ports whose
/// generator is on are skipped silently. With an unknown sync mode nothing starts. Poll
/// DisplayScene::isGrabbing to notice an acquisition that ends by itself.
///
/// Errors: an exception from the host (a channel that cannot start, a camera that does not answer) ends the
/// phase and goes to the error handler. Channels and cameras started before it keep running; a
/// StopAcquisitionCommand for the same channel stops them. Views::update_acquisition_state comes either way:
/// compare DisplayScene::isGrabbing of the channels.
///
/// Preconditions: "views" is injected, and the board is loaded.
class OVRA_GUI_CORE_API StartAcquisitionCommand : public ovra::core::Command
{
public:
    /// \param dma  the channel to start; a null pointer of this type: nothing starts. The command keeps the
    ///     node alive.
    /// \param grabArgument  number of images for each channel in reach. Negative: until it is stopped. 0:
    ///     starts and ends at once, as if all images had arrived. Cameras send until they are stopped.
    [[nodiscard]] static boost::shared_ptr<StartAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma, int grabArgument);
    /// \param port  the port of the camera to start; a null pointer of this type: nothing starts
    /// \param grabArgument  as above, for the channels in reach
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
