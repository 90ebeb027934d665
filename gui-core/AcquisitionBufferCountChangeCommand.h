// SPDX-License-Identifier: MIT
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

/// Changes the number of image buffers of one DMA channel, whatever the sync mode. A running acquisition is
/// interrupted while the buffers are reallocated, and continues: images of that time are lost, and the image
/// number goes on. A stopped one is not started.
///
///   - executeAsync, worker: FrameBufferGroup::setBufferCount, which allocates
///   - executePostAsync, GUI thread: stores both counts in the node; then Views::update_dma_memory,
///     update_acquisition_state
///
/// Afterwards the node's getAcqBuffersRequested is the requested number, and getAcqBuffersCurrent the
/// existing one. The existing number is lower if the requested buffers would exceed Gui::getTotalDmaMemory.
///
/// Errors: the command does not check the count. FrameBufferGroup::setBufferCount throws
/// std::invalid_argument for a count below 1; both numbers stay. It throws std::runtime_error if the runtime
/// has no memory; the existing number stays, and the requested number is the new one. Both exceptions go to
/// the application's error handler, and executePostAsync still runs. If the board was unloaded in the
/// meantime, no number changes, and the two callbacks come nevertheless.
///
/// Preconditions: "views" is injected.
class OVRA_GUI_CORE_API AcquisitionBufferCountChangeCommand : public ovra::core::Command
{
public:
    /// \param dma  a channel of a loaded board. Must not be null: executeAsync uses it without a test. The
    ///     command keeps the node alive.
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
