// SPDX-License-Identifier: MIT
/// \file
/// Reads the structure of an applet and publishes it on its board: processes, DMA channels, logical camera
/// ports, and the links between them.
///
/// All functions run on the worker. Those that can fail post an error to the user and return false; the board
/// is then half built, and the caller empties it.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentFileNode;
} // namespace ovra::core::models

namespace ovra::gui::applet {

/// The layout that an applet library of the oldest kind reports.
struct LegacyLayout
{
    int channels = 0; ///< each has one DMA channel, one process and one logical port; none when 0 or less
    bool medium = false;
    bool full = false;
};

/// Builds the structure from a legacy library's answers: channel, process and port i belong together.
void buildLegacyStructure(core::models::HlEnvironmentBoardNode& board, const LegacyLayout& layout);

/// Builds the structure from the runtime's answers, for an applet of any other kind.
bool buildRuntimeStructure(core::models::HlEnvironmentBoardNode& board,
                           const core::models::HlEnvironmentFileNode& file);

/// Posts DMA channels, processes and ports as information lines.
void logStructure(const core::models::HlEnvironmentBoardNode& board);

/// Connects each logical port with the physical port of the same index, if there is one.
void mapLogicalPorts(core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::applet
