/// \file
/// StopAcquisitionCommand: stops a DMA channel or a camera.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class HlEnvironmentDmaNode;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::gui::commands {

/// The sync mode (Gui::SyncMode) widens the stop as it widens the start, in the opposite order: first every
/// camera, then every DMA channel. What is missing on the way is skipped silently. Copies share one request.
class OVRA_GUI_CORE_API StopAcquisitionCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<StopAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma);
    static boost::shared_ptr<StopAcquisitionCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port);

    explicit StopAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentDmaNode> dma);
    explicit StopAcquisitionCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentLogicalPortNode> port);
    StopAcquisitionCommand(const StopAcquisitionCommand& other);
    StopAcquisitionCommand& operator=(const StopAcquisitionCommand& other);
    ~StopAcquisitionCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
