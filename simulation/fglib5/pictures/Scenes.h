/// \file
/// What simulated cameras look at. Each scene is a still picture with something in it that moves.
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

/// Paints what stays the same in all images.
void paintStill(Scene scene, Canvas& canvas);

/// Paints what moves; \p phase runs from 0 to 1, where it is 0 again.
void paintMoving(Scene scene, Canvas& canvas, float phase);

} // namespace simulation
