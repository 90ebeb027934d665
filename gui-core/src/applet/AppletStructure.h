/// \file
/// Reads the structure of an applet and publishes it on its board: processes, DMA channels, logical camera
/// ports, and the links between them.
///
/// All functions run on the worker. Those that can fail tell the user and return false; the board is then
/// half built, and the caller brings it back to empty.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentFileNode;
} // namespace ovra::core::models

namespace ovra::gui::commands {

/// What an applet library of the oldest kind says about itself.
struct LegacyLayout
{
    int channels = 0; ///< each has one DMA channel, one process and one logical port; none when 0 or less
    bool medium = false;
    bool full = false;
};

/// From a legacy applet library's answers: channel, process and port i belong together.
void buildLegacyStructure(core::models::HlEnvironmentBoardNode& board, const LegacyLayout& layout);

/// From the runtime, for an applet of any other kind.
bool buildRuntimeStructure(core::models::HlEnvironmentBoardNode& board,
                           const core::models::HlEnvironmentFileNode& file);

/// Lists DMA channels, processes and ports as information lines.
void logStructure(const core::models::HlEnvironmentBoardNode& board);

/// Connects each logical port with the physical port of the same index, if there is one.
void mapLogicalPorts(core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::commands
