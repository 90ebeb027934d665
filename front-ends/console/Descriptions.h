/// \file
/// What the console says of boards, channels and memory.
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class GenICamModel;
class HlEnvironmentBoardNode;
class HlEnvironmentDmaNode;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::console {

/// "1d0a3f"
std::string serialText(const core::models::HlEnvironmentBoardNode& board);
/// "board 0 - name"
std::string boardTitle(const core::models::HlEnvironmentBoardNode& board);
/// "board 0 DMA 1"
std::string channelTitle(const core::models::HlEnvironmentBoardNode& board,
                         const core::models::HlEnvironmentDmaNode& dma);
/// "1024 x 768"
std::string sizeText(int width, int height);

/// The connector that a logical port is mapped to.
std::string connectorText(const core::models::HlEnvironmentLogicalPortNode& port);
/// The camera at that connector; empty when there is none.
std::string cameraText(const core::models::HlEnvironmentLogicalPortNode& port);
/// Its controls; empty when there is none, or it has none.
boost::shared_ptr<core::models::GenICamModel>
cameraOf(const core::models::HlEnvironmentLogicalPortNode& port);

/// Which channels and cameras acquire.
std::string acquisitionText();
/// Memory of all DMA buffers, and its limit.
std::string memoryText();

} // namespace ovra::console
