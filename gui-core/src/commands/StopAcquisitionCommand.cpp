// SPDX-License-Identifier: MIT
#include "gui-core/StopAcquisitionCommand.h"

#include "acquisition/CameraOfPort.h"
#include "acquisition/ResourceSweep.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace ovra::gui::commands {

using core::models::HlEnvironmentDmaNode;
using core::models::HlEnvironmentLogicalPortNode;

struct StopAcquisitionCommand::Request
{
    acquisition::AcquisitionTarget target;
};

namespace {

void stopDma(const HlEnvironmentDmaNode& dma)
{
    if (const auto scene = dma.getDisplayScene())
        scene->stopGrabbing();
}

/// Skips ports with a Camera Link camera, though a start does not: see StartAcquisitionCommand.
void stopCamera(const HlEnvironmentLogicalPortNode& port)
{
    if (port.getGeneratorActive() || port.getClCameraPresent())
        return;
    if (const auto camera = acquisition::cameraOfPort(port))
        camera->stopAcquisition();
}

} // namespace

boost::shared_ptr<StopAcquisitionCommand>
StopAcquisitionCommand::create(boost::shared_ptr<HlEnvironmentDmaNode> dma)
{
    return boost::make_shared<StopAcquisitionCommand>(std::move(dma));
}

boost::shared_ptr<StopAcquisitionCommand>
StopAcquisitionCommand::create(boost::shared_ptr<HlEnvironmentLogicalPortNode> port)
{
    return boost::make_shared<StopAcquisitionCommand>(std::move(port));
}

StopAcquisitionCommand::StopAcquisitionCommand(boost::shared_ptr<HlEnvironmentDmaNode> dma)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>(Request{{std::move(dma), {}}}))
{}

StopAcquisitionCommand::StopAcquisitionCommand(boost::shared_ptr<HlEnvironmentLogicalPortNode> port)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>(Request{{{}, std::move(port)}}))
{}

StopAcquisitionCommand::StopAcquisitionCommand(const StopAcquisitionCommand& other) = default;
StopAcquisitionCommand& StopAcquisitionCommand::operator=(const StopAcquisitionCommand& other) = default;
StopAcquisitionCommand::~StopAcquisitionCommand() = default;

void StopAcquisitionCommand::executeSync() {}

void StopAcquisitionCommand::executeAsync()
{
    const acquisition::AcquisitionTarget& target = m_request->target;
    const Gui::SyncMode mode = Gui::getSyncMode();

    if (mode == Gui::SyncNone) {
        if (target.dma)
            stopDma(*target.dma);
        else if (target.port)
            stopCamera(*target.port);
    } else if (const auto reach = acquisition::reachOf(target, mode)) {
        // Cameras first, so that none sends to a stopped channel.
        const acquisition::ResourceSweep sweep;
        sweep.forEachLogicalPort(*reach, &stopCamera);
        sweep.forEachDma(*reach, &stopDma);
    }
}

void StopAcquisitionCommand::executePostAsync()
{
    Gui::views()->update_acquisition_state();
}

} // namespace ovra::gui::commands
