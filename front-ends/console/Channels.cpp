// SPDX-License-Identifier: MIT
#include "Channels.h"

#include "Arguments.h"
#include "Console.h"

#include "front-ends/shared/ImageCollection.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::console {

using namespace frontend;

namespace {

void appendChannel(std::vector<Channel>& channels, const Console& console, const BoardNode& board,
                   const DmaNode& dma)
{
    const auto scene = dma->getDisplayScene();
    auto* const images = console.images.find(*board, *dma);
    if (scene && images)
        channels.push_back({channelTitle(*board, *dma), board->getIndex(), dma, scene, images});
}

} // namespace

Fields Channel::fields(const Fields& more) const
{
    Fields all{{"board", std::int64_t{board}}, {"dma", static_cast<std::int64_t>(dma->getIndex())}};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::vector<Channel> allChannels(const Console& console)
{
    std::vector<Channel> channels;
    for (const auto& board : allBoards())
        for (const auto& dma : listOf(board->getDmas()))
            appendChannel(channels, console, board, dma);
    return channels;
}

Channel findChannel(const Console& console, const Arguments& arguments, std::size_t position)
{
    const auto board = findLoadedBoard(arguments.text(position));
    const auto dma = findDma(*board, arguments.integer(position + 1, "DMA", 0));
    std::vector<Channel> channels;
    appendChannel(channels, console, board, dma);
    if (channels.empty())
        throw RequestError(channelTitle(*board, *dma) + " has no display");
    return channels.front();
}

} // namespace ovra::console
