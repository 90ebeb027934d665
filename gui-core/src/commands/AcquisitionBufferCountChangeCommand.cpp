// SPDX-License-Identifier: MIT
#include "gui-core/AcquisitionBufferCountChangeCommand.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace ovra::gui::commands {

using core::models::HlEnvironmentDmaNode;

struct AcquisitionBufferCountChangeCommand::Request
{
    boost::shared_ptr<HlEnvironmentDmaNode> dma;
    int buffers;
};

boost::shared_ptr<AcquisitionBufferCountChangeCommand>
AcquisitionBufferCountChangeCommand::create(boost::shared_ptr<HlEnvironmentDmaNode> dma, int buffers)
{
    return boost::make_shared<AcquisitionBufferCountChangeCommand>(std::move(dma), buffers);
}

AcquisitionBufferCountChangeCommand::AcquisitionBufferCountChangeCommand(
    boost::shared_ptr<HlEnvironmentDmaNode> dma, int buffers)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>(Request{std::move(dma), buffers}))
{}

AcquisitionBufferCountChangeCommand::AcquisitionBufferCountChangeCommand(
    const AcquisitionBufferCountChangeCommand& other) = default;
AcquisitionBufferCountChangeCommand&
AcquisitionBufferCountChangeCommand::operator=(const AcquisitionBufferCountChangeCommand& other) = default;
AcquisitionBufferCountChangeCommand::~AcquisitionBufferCountChangeCommand() = default;

void AcquisitionBufferCountChangeCommand::executeSync() {}

// An unload may run before or between the phases: the channel then has no group.
void AcquisitionBufferCountChangeCommand::executeAsync()
{
    if (const auto group = m_request->dma->getFrameBufferGroup())
        group->setBufferCount(m_request->buffers);
}

void AcquisitionBufferCountChangeCommand::executePostAsync()
{
    HlEnvironmentDmaNode& dma = *m_request->dma;
    if (const auto group = dma.getFrameBufferGroup())
        dma.setAcqBuffersRequested(group->requestedBufferCount());
    if (const auto group = dma.getFrameBufferGroup())
        dma.setAcqBuffersCurrent(group->bufferCount());
    Gui::views()->update_dma_memory();
    Gui::views()->update_acquisition_state();
}

} // namespace ovra::gui::commands
