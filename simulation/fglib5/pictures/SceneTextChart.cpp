// SPDX-License-Identifier: MIT
#include "pictures/Canvas.h"
#include "pictures/SceneParts.h"

#include <string>

namespace simulation {

namespace {

constexpr float PAPER = 0.90F;
constexpr float INK = 0.06F;

constexpr auto WARM_PAPER = hue(1, 0.98F, 0.92F), RED = hue(1, 0.12F, 0.10F);

Point hubOf(const Canvas& canvas)
{
    return {canvas.right() / 2, 0.46F};
}

void paintRing(Canvas& canvas, Point center, float radius, float thickness)
{
    const float outer = radius + thickness;
    canvas.paint(
        {center.x - outer, center.y - outer, center.x + outer, center.y + outer},
        [&](float x, float y) { return std::abs(circle(x, y, center, radius)) - thickness / 2; },
        [](float, float) { return INK; });
}

void paintStar(Canvas& canvas, Point center, float radius)
{
    constexpr float SPOKES = 36;
    const auto spoke = [&](float x, float y) {
        const float angle = std::atan2(y - center.y, x - center.x);
        const float away = std::max(circle(x, y, center, 0), 1e-4F);
        // Approximate distance from the nearest spoke's edge, which is at a zero of the sine.
        return std::sin(angle * SPOKES) * away / SPOKES;
    };
    canvas.paint(
        {center.x - radius, center.y - radius, center.x + radius, center.y + radius},
        [&](float x, float y) { return std::max(spoke(x, y), circle(x, y, center, radius)); },
        [](float, float) { return INK; });
}

// Groups of five bars, each group finer than the previous one.
void paintBars(Canvas& canvas, Point corner, bool upright)
{
    float pitch = 0.022F;
    for (int group = 0; group < 6; ++group) {
        const float length = pitch * 5;
        for (int bar = 0; bar < 5; ++bar) {
            const float from = static_cast<float>(bar) * pitch;
            const Box box =
                upright ? Box{corner.x + from, corner.y, corner.x + from + pitch / 2, corner.y + length}
                        : Box{corner.x, corner.y + from, corner.x + length, corner.y + from + pitch / 2};
            canvas.fillBox(box, INK);
        }
        corner.y += length + 0.018F;
        pitch *= 0.74F;
    }
}

void paintWedge(Canvas& canvas, const Box& box)
{
    canvas.paint(
        box, [&](float x, float y) { return roundedBox(x, y, box, 0); },
        [&](float x, float) {
            const float step = std::floor((x - box.left) / (box.right - box.left) * 12);
            return std::clamp(step, 0.0F, 11.0F) / 11;
        });
}

void paintFineWedge(Canvas& canvas, const Box& box)
{
    canvas.paint(
        box, [&](float x, float y) { return roundedBox(x, y, box, 0); },
        [&](float x, float) { return (x - box.left) / (box.right - box.left); });
}

void paintChecks(Canvas& canvas, const Box& box, float side)
{
    canvas.paint(
        box, [&](float x, float y) { return roundedBox(x, y, box, 0); },
        [&](float x, float y) {
            const auto column = static_cast<int>((x - box.left) / side);
            const auto row = static_cast<int>((y - box.top) / side);
            return (column + row) % 2 == 0 ? INK : PAPER;
        });
}

void paintCorner(Canvas& canvas, Point center)
{
    paintRing(canvas, center, 0.045F, 0.004F);
    canvas.fillStroke({center.x - 0.06F, center.y}, {center.x + 0.06F, center.y}, 0.003F, INK);
    canvas.fillStroke({center.x, center.y - 0.06F}, {center.x, center.y + 0.06F}, 0.003F, INK);
    canvas.fillCircle(center, 0.012F, INK);
}

void paintFrame(Canvas& canvas)
{
    const float right = canvas.right();
    canvas.setBrush(WARM_PAPER);
    canvas.cover([&](float x, float y) {
        return PAPER - 0.10F * circle(x, y, {right / 2, 0.5F}, 0) / right;
    });
    canvas.setBrush(WHITE);
    for (const float x : {0.02F, right - 0.02F})
        canvas.fillStroke({x, 0.02F}, {x, 0.98F}, 0.006F, INK);
    for (const float y : {0.02F, 0.98F})
        canvas.fillStroke({0.02F, y}, {right - 0.02F, y}, 0.006F, INK);
    for (const float x : {0.10F, right - 0.10F})
        for (const float y : {0.17F, 0.90F})
            paintCorner(canvas, {x, y});
}

// Six colour fields: red, yellow, green, cyan, blue, magenta.
void paintColours(Canvas& canvas, Point corner, float side)
{
    constexpr Colour FIELDS[] = {{0.8F, 0.1F, 0.1F}, {0.8F, 0.8F, 0.1F}, {0.1F, 0.7F, 0.1F},
                                 {0.1F, 0.7F, 0.7F}, {0.1F, 0.1F, 0.8F}, {0.7F, 0.1F, 0.7F}};
    for (const auto& field : FIELDS) {
        const Box box{corner.x, corner.y, corner.x + side, corner.y + side};
        canvas.paint(
            box, [&](float x, float y) { return roundedBox(x, y, box, 0); },
            [&](float, float) { return field; });
        corner.x += side;
    }
}

void paintText(Canvas& canvas)
{
    const float middle = canvas.right() / 2;
    canvas.write("TEST CHART 7", {middle - 0.21F, 0.04F}, 0.035F, INK);
    float height = 0.025F, y = 0.28F;
    for (const std::string line : {"0123456789", "ABCDEFGHIJK", "LMNOPQRSTUV", "0123456789-WXYZ"}) {
        canvas.write(line, {middle + 0.40F, y}, height, INK);
        y += height * 1.6F;
        height *= 0.80F;
    }
}

} // namespace

void paintTextChart(Canvas& canvas)
{
    paintFrame(canvas);
    const auto hub = hubOf(canvas);
    paintRing(canvas, hub, 0.335F, 0.006F);
    paintRing(canvas, hub, 0.26F, 0.003F);
    paintStar(canvas, hub, 0.19F);
    canvas.fillCircle(hub, 0.022F, PAPER);
    paintBars(canvas, {hub.x - 0.60F, 0.27F}, true);
    paintBars(canvas, {hub.x - 0.47F, 0.27F}, false);
    paintChecks(canvas, {hub.x + 0.40F, 0.47F, hub.x + 0.50F, 0.57F}, 0.02F);
    paintChecks(canvas, {hub.x + 0.52F, 0.47F, hub.x + 0.62F, 0.57F}, 0.01F);
    paintFineWedge(canvas, {hub.x + 0.40F, 0.60F, hub.x + 0.62F, 0.66F});
    paintColours(canvas, {hub.x + 0.40F, 0.69F}, 0.22F / 6);
    paintWedge(canvas, {hub.x - 0.40F, 0.85F, hub.x + 0.40F, 0.94F});
    paintText(canvas);
}

void paintChartHand(Canvas& canvas, float phase)
{
    const auto hub = hubOf(canvas);
    const float angle = phase * 2 * PI - PI / 2;
    canvas.setBrush(RED);
    const Point tip{hub.x + 0.30F * std::cos(angle), hub.y + 0.30F * std::sin(angle)};
    canvas.fillStroke(hub, tip, 0.012F, 0.35F);
    canvas.setBrush(WHITE);
    canvas.fillCircle(tip, 0.024F, INK);
    canvas.fillCircle(tip, 0.012F, 0.98F);
    canvas.fillCircle(hub, 0.018F, INK);
}

} // namespace simulation
