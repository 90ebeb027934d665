// SPDX-License-Identifier: MIT
/// \file
/// Channel: a DMA channel with a display scene, and look-ups of channels for commands.
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

    /// The fields "board" and "dma", followed by \p more, for output as JSON.
    Fields fields(const Fields& more) const;
};

/// All channels, in the order of boards and channels.
std::vector<Channel> allChannels(const Console& console);

/// The channel that two arguments from \p position on name: board and index of the DMA channel. Throws
/// RequestError.
Channel findChannel(const Console& console, const Arguments& arguments, std::size_t position);

} // namespace ovra::console
