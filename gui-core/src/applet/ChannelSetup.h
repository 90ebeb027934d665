/// \file
/// Gives a board that has its structure what front ends and acquisition need: events, parameters, buffers,
/// scenes.
///
/// All functions run on the worker.
#pragma once

#include "model/AppletType.h"

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Makes the board's events model and lets the front end subscribe to it.
void createEventsModel(core::models::HlEnvironmentBoardNode& board);

/// Makes the models of the parameters that the runtime describes: one for each DMA channel, or for a HAP
/// applet one for all of them and the board. Where the runtime gives no description the user is warned, and
/// the model stays away.
void createParameterModels(core::models::HlEnvironmentBoardNode& board, AppletType type);

/// Gives each DMA channel its timeout, buffers and display scene, with the configured defaults.
void setUpChannels(core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::commands
