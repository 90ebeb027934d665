// SPDX-License-Identifier: MIT
/// \file
/// Scenes of the simulated cameras. Each is a still picture with a moving object.
#pragma once

#include "pictures/Canvas.h"

#include <string_view>

namespace simulation {

enum class Scene
{
    Landscape,    ///< a windmill turns
    CircuitBoard, ///< a line of light sweeps over the board
    Bottles,      ///< a conveyor moves
    TextChart,    ///< a hand turns
};

Scene sceneNamed(std::string_view name);

/// Paints the parts that do not move.
void paintStill(Scene scene, Canvas& canvas);

/// Paints the moving parts; \p phase runs from 0 to 1, and 1 looks like 0.
void paintMoving(Scene scene, Canvas& canvas, float phase);

} // namespace simulation
