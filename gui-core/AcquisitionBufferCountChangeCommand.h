/// \file
/// AcquisitionBufferCountChangeCommand: changes the number of image buffers of a DMA channel.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::AcquisitionBufferCountChangeCommand::create(dma, 32));
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class HlEnvironmentDmaNode;
}

namespace ovra::gui::commands {

/// Gives a DMA channel another number of image buffers. Only that channel changes, whatever the sync mode. An
/// acquisition that runs goes on afterwards; none is started.
///
///   - executeAsync, worker: FrameBufferGroup::setBufferCount; takes as long as memory takes to be had
///   - executePostAsync, GUI thread: the node gets both counts, then Views::update_dma_memory,
///     update_acquisition_state
///
/// Afterwards getAcqBuffersRequested of the node tells what was asked for, getAcqBuffersCurrent what there
/// is: fewer, where Gui::getTotalDmaMemory sets a limit. Compare the two to tell the user.
///
/// Errors: the count is not checked here. The group throws std::invalid_argument for one below 1 and changes
/// nothing, and std::runtime_error where the runtime has no memory, with as many buffers as before. Both go
/// to the application's error handler, and executePostAsync still runs. A channel without a group, because
/// its board was unloaded in the meantime, keeps its counts.
///
/// Before: "views" is injected.
class OVRA_GUI_CORE_API AcquisitionBufferCountChangeCommand : public ovra::core::Command
{
public:
    /// \param dma  a channel of a loaded board; must not be null. The command keeps the node alive.
    /// \param buffers  number of image buffers, 1 or more
    [[nodiscard]] static boost::shared_ptr<AcquisitionBufferCountChangeCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma, int buffers);

    AcquisitionBufferCountChangeCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma,
                                        int buffers);
    /// Copies share one request: submitting a copy is submitting the same command.
    AcquisitionBufferCountChangeCommand(const AcquisitionBufferCountChangeCommand& other);
    AcquisitionBufferCountChangeCommand& operator=(const AcquisitionBufferCountChangeCommand& other);
    ~AcquisitionBufferCountChangeCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
