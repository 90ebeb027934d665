#include "pictures/Scenes.h"

#include "pictures/SceneParts.h"

namespace simulation {

Scene sceneNamed(std::string_view name)
{
    if (name == "landscape")
        return Scene::landscape;
    if (name == "circuit-board")
        return Scene::circuitBoard;
    if (name == "bottles")
        return Scene::bottles;
    return Scene::textChart;
}

void paintStill(Scene scene, Canvas& canvas)
{
    switch (scene) {
    case Scene::landscape:
        return paintLandscape(canvas);
    case Scene::circuitBoard:
        return paintCircuitBoard(canvas);
    case Scene::bottles:
        return paintBottlingHall(canvas);
    case Scene::textChart:
        return paintTextChart(canvas);
    }
}

void paintMoving(Scene scene, Canvas& canvas, float phase)
{
    switch (scene) {
    case Scene::landscape:
        return paintWindmillSails(canvas, phase);
    case Scene::circuitBoard:
        return paintLineOfLight(canvas, phase);
    case Scene::bottles:
        return paintBottles(canvas, phase);
    case Scene::textChart:
        return paintChartHand(canvas, phase);
    }
}

} // namespace simulation
