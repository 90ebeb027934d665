// SPDX-License-Identifier: MIT
#include "gui-core/StartAcquisitionCommand.h"

#include "acquisition/CameraOfPort.h"
#include "acquisition/ImageSizes.h"
#include "acquisition/ResourceSweep.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace ovra::gui::commands {

using core::models::HlEnvironmentDmaNode;
using core::models::HlEnvironmentLogicalPortNode;

struct StartAcquisitionCommand::Request
{
    acquisition::AcquisitionTarget target;
    int grabArgument;
};

namespace {

void startDma(const HlEnvironmentDmaNode& dma, int grabArgument)
{
    if (const auto scene = dma.getDisplayScene())
        scene->startGrabbing(grabArgument);
}

/// Unlike the stop, the start does not skip ports with a Camera Link camera. The difference is deliberate.
void startCamera(const HlEnvironmentLogicalPortNode& port)
{
    if (port.getGeneratorActive())
        return;
    if (const auto camera = acquisition::cameraOfPort(port))
        camera->restartAcquisition();
}

} // namespace

boost::shared_ptr<StartAcquisitionCommand>
StartAcquisitionCommand::create(boost::shared_ptr<HlEnvironmentDmaNode> dma, int grabArgument)
{
    return boost::make_shared<StartAcquisitionCommand>(std::move(dma), grabArgument);
}

boost::shared_ptr<StartAcquisitionCommand>
StartAcquisitionCommand::create(boost::shared_ptr<HlEnvironmentLogicalPortNode> port, int grabArgument)
{
    return boost::make_shared<StartAcquisitionCommand>(std::move(port), grabArgument);
}

StartAcquisitionCommand::StartAcquisitionCommand(boost::shared_ptr<HlEnvironmentDmaNode> dma,
                                                 int grabArgument)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>(Request{{std::move(dma), {}}, grabArgument}))
{}

StartAcquisitionCommand::StartAcquisitionCommand(boost::shared_ptr<HlEnvironmentLogicalPortNode> port,
                                                 int grabArgument)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>(Request{{{}, std::move(port)}, grabArgument}))
{}

StartAcquisitionCommand::StartAcquisitionCommand(const StartAcquisitionCommand& other) = default;
StartAcquisitionCommand& StartAcquisitionCommand::operator=(const StartAcquisitionCommand& other) = default;
StartAcquisitionCommand::~StartAcquisitionCommand() = default;

void StartAcquisitionCommand::executeSync()
{
    if (core::HarloApplication::getConfigIntEntry(keys::COMPARE_IMAGE_SIZES.name,
                                                  keys::COMPARE_IMAGE_SIZES.defaultValue) == 0)
        return;
    // A single channel is deliberately started without a comparison.
    if (const auto reach = acquisition::reachOf(m_request->target, Gui::getSyncMode()))
        acquisition::reconcileImageSizes(*reach);
}

void StartAcquisitionCommand::executeAsync()
{
    const acquisition::AcquisitionTarget& target = m_request->target;
    const int grabArgument = m_request->grabArgument;
    const Gui::SyncMode mode = Gui::getSyncMode();

    if (mode == Gui::SyncNone) {
        if (target.dma)
            startDma(*target.dma, grabArgument);
        else if (target.port)
            startCamera(*target.port);
    } else if (const auto reach = acquisition::reachOf(target, mode)) {
        // Channels first, so that each is ready before the first camera sends.
        const acquisition::ResourceSweep sweep;
        sweep.forEachDma(*reach,
                         [grabArgument](const HlEnvironmentDmaNode& dma) { startDma(dma, grabArgument); });
        sweep.forEachLogicalPort(*reach, &startCamera);
    }
}

void StartAcquisitionCommand::executePostAsync()
{
    Gui::views()->update_acquisition_state();
}

} // namespace ovra::gui::commands
