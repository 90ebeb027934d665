// SPDX-License-Identifier: MIT
#include "Titles.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <array>
#include <sstream>

namespace ovra::frontend {

std::string serialText(const core::models::HlEnvironmentBoardNode& board)
{
    std::ostringstream text;
    text << std::hex << board.getSerial();
    return text.str();
}

std::string boardTitle(const core::models::HlEnvironmentBoardNode& board)
{
    return "board " + std::to_string(board.getIndex()) + " - " + board.getBoardName();
}

std::string channelTitle(const core::models::HlEnvironmentBoardNode& board,
                         const core::models::HlEnvironmentDmaNode& dma)
{
    return "board " + std::to_string(board.getIndex()) + " DMA " + std::to_string(dma.getIndex());
}

std::string sizeText(int width, int height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}

const char* logLevelName(unsigned long level)
{
    constexpr std::array NAMES{"error", "warning", "information", "debug"};
    return level < NAMES.size() ? NAMES[level] : "message";
}

} // namespace ovra::frontend
