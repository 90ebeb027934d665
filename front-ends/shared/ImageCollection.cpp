// SPDX-License-Identifier: MIT
#include "ImageCollection.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::frontend {

void ImageCollection::attach(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board)
{
    Board& entry = m_boards[board->getSerial()];
    entry.node = board;
    // Clear first: the destructor of a keeper removes the visualizer of its scene, even a new one.
    entry.keepers.clear();
    for (const auto dmas = board->getDmas(); dmas->hasNext(); dmas->advance()) {
        const auto& dma = dmas->current();
        if (const auto scene = dma->getDisplayScene())
            entry.keepers[dma->getIndex()] = std::make_unique<ImageKeeper>(scene);
    }
}

void ImageCollection::dropUnloaded()
{
    std::erase_if(m_boards, [](const auto& entry) {
        const auto board = entry.second.node.lock();
        return !board || !board->getBoardHandle();
    });
}

ImageKeeper* ImageCollection::find(const core::models::HlEnvironmentBoardNode& board,
                                   const core::models::HlEnvironmentDmaNode& dma) const
{
    const auto entry = m_boards.find(board.getSerial());
    if (entry == m_boards.end())
        return nullptr;
    const auto keeper = entry->second.keepers.find(dma.getIndex());
    return keeper == entry->second.keepers.end() ? nullptr : keeper->second.get();
}

} // namespace ovra::frontend
