// SPDX-License-Identifier: MIT
/// \file
/// Titles of boards, channels and log levels for display.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentDmaNode;
} // namespace ovra::core::models

namespace ovra::frontend {

/// "1d0a3f"
std::string serialText(const core::models::HlEnvironmentBoardNode& board);
/// "board 0 - name"
std::string boardTitle(const core::models::HlEnvironmentBoardNode& board);
/// "board 0 DMA 1"
std::string channelTitle(const core::models::HlEnvironmentBoardNode& board,
                         const core::models::HlEnvironmentDmaNode& dma);
/// "1024 x 768"
std::string sizeText(int width, int height);
/// "warning" for 1
const char* logLevelName(unsigned long level);

} // namespace ovra::frontend
