/// \file
/// The global resources of a loaded board: their keys, how they are registered, and how they are found again.
#pragma once

#include "model/AppletType.h"

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentGlobalResourceNode;
} // namespace ovra::core::models

namespace ovra::gui::commands {

/// "board-" and the serial in lowercase hexadecimal, without padding: what every key of a board begins with.
std::string boardKey(unsigned int serial);

/// "board-0000-process-0001-dma-0002": orders DMA channels by board index, process and channel. Unlike the
/// resource keys it has the board's index, not its serial.
std::string dmaSortKey(int board, unsigned int process, unsigned int dma);

/// Registers the board, its groups, processes, DMA channels and ports, and gives each DMA channel its sort
/// key.
void registerBoardResources(core::models::HlEnvironmentBoardNode& board, AppletType type);

/// Whether \p resource stands for \p board or for something on it. False when what it stands for is gone.
bool belongsToBoard(const core::models::HlEnvironmentGlobalResourceNode& resource,
                    const core::models::HlEnvironmentBoardNode& board);

/// Removes every resource that belongs to the board, in ascending order of the keys.
void removeBoardResources(const core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::commands
