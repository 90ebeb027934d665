// SPDX-License-Identifier: MIT
/// \file
/// The global resources of a loaded board.
#pragma once

#include "model/AppletType.h"

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::model {

/// Registers the board, its groups, processes, DMA channels and ports, and gives each DMA channel its sort
/// key.
void registerBoardResources(core::models::HlEnvironmentBoardNode& board, AppletType type);

/// Removes every resource that belongs to the board, in ascending order of the keys.
void removeBoardResources(const core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::model
