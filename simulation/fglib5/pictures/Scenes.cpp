// SPDX-License-Identifier: MIT
#include "pictures/Scenes.h"

#include "pictures/SceneParts.h"

namespace simulation {

Scene sceneNamed(std::string_view name)
{
    if (name == "landscape")
        return Scene::Landscape;
    if (name == "circuit-board")
        return Scene::CircuitBoard;
    if (name == "bottles")
        return Scene::Bottles;
    return Scene::TextChart;
}

void paintStill(Scene scene, Canvas& canvas)
{
    switch (scene) {
    case Scene::Landscape:
        return paintLandscape(canvas);
    case Scene::CircuitBoard:
        return paintCircuitBoard(canvas);
    case Scene::Bottles:
        return paintBottlingHall(canvas);
    case Scene::TextChart:
        return paintTextChart(canvas);
    }
}

void paintMoving(Scene scene, Canvas& canvas, float phase)
{
    switch (scene) {
    case Scene::Landscape:
        return paintWindmillSails(canvas, phase);
    case Scene::CircuitBoard:
        return paintLineOfLight(canvas, phase);
    case Scene::Bottles:
        return paintBottles(canvas, phase);
    case Scene::TextChart:
        return paintChartHand(canvas, phase);
    }
}

} // namespace simulation
