// SPDX-License-Identifier: MIT
/// \file
/// Creates what front ends and acquisition need on a board whose structure is built: events, parameters,
/// buffers, scenes.
///
/// All functions run on the worker.
#pragma once

#include "model/AppletType.h"

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::applet {

/// Creates the board's events model and lets the front end subscribe to it.
void createEventsModel(core::models::HlEnvironmentBoardNode& board);

/// Creates the models of the parameters that the runtime describes: one for each DMA channel, or for a HAP
/// applet one for all of them and the board. Where the runtime gives no description, posts a warning and
/// creates no model.
void createParameterModels(core::models::HlEnvironmentBoardNode& board, model::AppletType type);

/// Gives each DMA channel its timeout, buffers and display scene, with the configured defaults.
void setUpChannels(core::models::HlEnvironmentBoardNode& board);

} // namespace ovra::gui::applet
