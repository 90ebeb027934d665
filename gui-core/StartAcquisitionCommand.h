/// \file
/// StartAcquisitionCommand: starts a DMA channel or a camera.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class HlEnvironmentDmaNode;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::gui::commands {

/// The sync mode (Gui::SyncMode) widens the start to a process, a board, or all boards: first every DMA
/// channel, then every camera. Before that, unless the mode is SyncNone or the entry
/// "gui.preferences.sync_dma_and_camera_dimensions" is 0, the image sizes of cameras and DMA channels are
/// compared, and the user is asked what to do where they differ.
///
/// grabArgument is handed to DisplayScene::startGrabbing of every channel. What is missing on the way (no
/// scene, no camera, generator switched on) is skipped silently. Copies share one request.
class OVRA_GUI_CORE_API StartAcquisitionCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<StartAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma, int grabArgument);
    static boost::shared_ptr<StartAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port, int grabArgument);

    StartAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma,
                            int grabArgument);
    StartAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port,
                            int grabArgument);
    StartAcquisitionCommand(const StartAcquisitionCommand& other);
    StartAcquisitionCommand& operator=(const StartAcquisitionCommand& other);
    ~StartAcquisitionCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
