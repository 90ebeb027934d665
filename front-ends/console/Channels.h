/// \file
/// The DMA channels that have images, as the commands name them.
#pragma once

#include "Fields.h"

#include "front-ends/shared/Lookup.h"

#include "ovra-lib-display/DisplayScene.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ovra::frontend {
class ImageKeeper;
}

namespace ovra::console {

class Arguments;
struct Console;

/// A DMA channel that has a display scene. GUI thread; valid until its board is unloaded.
struct Channel
{
    std::string title; ///< "board 0 DMA 1"
    int board;         ///< index
    frontend::DmaNode dma;
    boost::shared_ptr<display::DisplayScene> scene;
    frontend::ImageKeeper* images;

    std::int64_t received() const { return scene->statistics().received; }

    /// Begins what a program is told about the channel: "board" and "dma".
    Fields fields(const Fields& more) const;
};

/// In the order of boards and channels.
std::vector<Channel> allChannels(const Console& console);

/// The channel that two arguments from \p position on name: board, and index of the DMA channel. Throws
/// RequestError.
Channel findChannel(const Console& console, const Arguments& arguments, std::size_t position);

} // namespace ovra::console
