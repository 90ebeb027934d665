/// \file
/// AcquisitionBufferCountChangeCommand: changes the number of image buffers of a DMA channel.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class HlEnvironmentDmaNode;
}

namespace ovra::gui::commands {

/// Hands the number to the channel's frame-buffer group on the worker. Then the node takes over what the
/// group was asked for and what it holds, which may be fewer, and the front end is told through
/// Views::update_dma_memory and Views::update_acquisition_state. Only this channel changes, whatever the sync
/// mode; acquisition is neither stopped nor started.
///
/// The number is not checked here: what the group does not take, it answers with an exception, which goes to
/// the command processor. A channel without a group, because its board was unloaded meanwhile, keeps what it
/// says. Copies share one request.
class OVRA_GUI_CORE_API AcquisitionBufferCountChangeCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<AcquisitionBufferCountChangeCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma, int buffers);

    AcquisitionBufferCountChangeCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma,
                                        int buffers);
    AcquisitionBufferCountChangeCommand(const AcquisitionBufferCountChangeCommand& other);
    AcquisitionBufferCountChangeCommand& operator=(const AcquisitionBufferCountChangeCommand& other);
    ~AcquisitionBufferCountChangeCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
