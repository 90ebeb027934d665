// SPDX-License-Identifier: MIT
/// \file
/// The painting functions of each scene, for Scenes.cpp.
#pragma once

namespace simulation {

class Canvas;

void paintLandscape(Canvas& canvas);
void paintWindmillSails(Canvas& canvas, float phase);

void paintCircuitBoard(Canvas& canvas);
void paintLineOfLight(Canvas& canvas, float phase);

void paintBottlingHall(Canvas& canvas);
void paintBottles(Canvas& canvas, float phase);

void paintTextChart(Canvas& canvas);
void paintChartHand(Canvas& canvas, float phase);

} // namespace simulation
