// SPDX-License-Identifier: MIT
#include "ChannelImages.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::viewer {

ChannelImages::~ChannelImages()
{
    dropAll();
}

void ChannelImages::attach(const frontend::BoardNode& board)
{
    Board& entry = m_boards[board->getSerial()];
    detach(entry);
    entry.node = board;
    for (const auto& dma : frontend::listOf(board->getDmas())) {
        const auto scene = dma->getDisplayScene();
        if (!scene)
            continue;
        Attached& attached = entry.dmas[dma->getIndex()];
        attached = {scene, std::make_shared<ChannelVisualizer>(m_channels.add())};
        scene->setVisualizer(attached.visualizer.get());
    }
}

void ChannelImages::dropUnloaded()
{
    for (auto& [serial, board] : m_boards) {
        const auto node = board.node.lock();
        if (!node || !node->getBoardHandle())
            detach(board);
    }
}

void ChannelImages::dropAll()
{
    for (auto& [serial, board] : m_boards)
        detach(board);
}

std::shared_ptr<ImageFeed> ChannelImages::find(unsigned int serial, unsigned int dma) const
{
    const auto visualizer = findVisualizer(serial, dma);
    return visualizer ? visualizer->channel() : nullptr;
}

std::shared_ptr<ChannelVisualizer> ChannelImages::findVisualizer(unsigned int serial, unsigned int dma) const
{
    const auto board = m_boards.find(serial);
    if (board == m_boards.end())
        return nullptr;
    const auto attached = board->second.dmas.find(dma);
    return attached == board->second.dmas.end() ? nullptr : attached->second.visualizer;
}

// A successful unload has already removed the visualizers. After a failed one, a remaining scene must not
// call them any more.
void ChannelImages::detach(Board& board)
{
    for (auto& [index, attached] : board.dmas) {
        if (const auto scene = attached.scene.lock())
            scene->setVisualizer(nullptr);
        m_channels.remove(attached.visualizer->channel()->id());
    }
    board.dmas.clear();
}

} // namespace ovra::viewer
