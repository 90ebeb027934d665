// SPDX-License-Identifier: MIT
/// \file
/// ImageCollection: the image keepers of all loaded boards.
#pragma once

#include "ImageKeeper.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <map>
#include <memory>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentDmaNode;
} // namespace ovra::core::models

namespace ovra::frontend {

/// GUI thread.
class ImageCollection
{
public:
    /// Creates a keeper for each DMA channel of \p board.
    void attach(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board);
    /// Drops the keepers of boards without an applet.
    void dropUnloaded();

    /// Null for a channel without one. Valid until its board is unloaded.
    ImageKeeper* find(const core::models::HlEnvironmentBoardNode& board,
                      const core::models::HlEnvironmentDmaNode& dma) const;

private:
    struct Board
    {
        boost::weak_ptr<core::models::HlEnvironmentBoardNode> node;
        std::map<unsigned int, std::unique_ptr<ImageKeeper>> keepers; ///< by DMA index
    };

    std::map<unsigned int, Board> m_boards; ///< by serial number
};

} // namespace ovra::frontend
