// SPDX-License-Identifier: MIT
#include "Titles.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

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

} // namespace ovra::frontend
