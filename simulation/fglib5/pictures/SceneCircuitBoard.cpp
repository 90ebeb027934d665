// SPDX-License-Identifier: MIT
#include "pictures/Canvas.h"
#include "pictures/SceneParts.h"

#include <array>
#include <string>

namespace simulation {

namespace {

constexpr float TABLE = 0.07F, MASK = 0.27F, POUR = 0.32F, COPPER = 0.44F;
constexpr float TIN = 0.80F, SILK = 0.92F, PLASTIC = 0.13F, HOLE = 0.03F;
constexpr float MARGIN = 0.035F;

constexpr auto SOLDER_MASK = hue(0.16F, 0.62F, 0.36F), GOLD = hue(1, 0.84F, 0.48F),
               CERAMIC = hue(0.80F, 0.62F, 0.42F);
constexpr auto BLUE_STEEL = hue(0.70F, 0.80F, 1);

float metal(float x, float y)
{
    return TIN + 0.10F * (noise(x * 160, y * 160) - 0.5F);
}

void paintBare(Canvas& canvas)
{
    canvas.setBrush(BLUE_STEEL);
    const Box board{MARGIN, MARGIN, canvas.right() - MARGIN, 1 - MARGIN};
    canvas.cover([](float x, float y) { return TABLE + 0.03F * noise(x * 6, y * 6); });
    canvas.paint(
        {0, 0, canvas.right(), 1},
        [&](float x, float y) { return roundedBox(x - 0.008F, y - 0.010F, board, 0.02F); },
        [](float, float) { return 0.02F; }); // its shadow
    canvas.setBrush(SOLDER_MASK);
    canvas.paint(
        board, [&](float x, float y) { return roundedBox(x, y, board, 0.02F); },
        [](float x, float y) {
            const float weave = 0.012F * std::sin(x * 420) * std::sin(y * 420);
            const float area = ramp(0.47F, 0.53F, noise(x * 3.2F + 5, y * 3.2F));
            return mix(MASK, POUR, area) + weave;
        });
}

void paintPad(Canvas& canvas, Point center, float radius, float drill)
{
    canvas.setBrush(GOLD);
    canvas.paint(
        {center.x - radius, center.y - radius, center.x + radius, center.y + radius},
        [&](float x, float y) { return circle(x, y, center, radius); }, metal);
    canvas.fillCircle(center, drill, HOLE);
}

void paintHoles(Canvas& canvas)
{
    for (const float x : {MARGIN + 0.055F, canvas.right() - MARGIN - 0.055F})
        for (const float y : {MARGIN + 0.055F, 1 - MARGIN - 0.055F})
            paintPad(canvas, {x, y}, 0.038F, 0.022F);
}

void paintTrace(Canvas& canvas, std::initializer_list<Point> corners)
{
    canvas.setBrush(SOLDER_MASK);
    const auto* from = corners.begin();
    for (const auto* to = from + 1; to != corners.end(); from = to++)
        canvas.fillStroke(*from, *to, 0.0055F, COPPER);
}

void paintVia(Canvas& canvas, Point center)
{
    paintPad(canvas, center, 0.0085F, 0.004F);
}

// Parallel lines that run downwards, bend by 45 degrees and continue to the side.
void paintBus(Canvas& canvas, Point start, int lines, float down, float side)
{
    const float sign = side < 0 ? -1.0F : 1.0F;
    for (int i = 0; i < lines; ++i) {
        const float offset = static_cast<float>(i) * 0.0145F;
        const float x = start.x + sign * offset;
        const float bend = start.y + down - offset;
        paintTrace(
            canvas,
            {{x, start.y}, {x, bend}, {x + sign * 0.05F, bend + 0.05F}, {start.x + side, bend + 0.05F}});
        paintVia(canvas, {start.x + side, bend + 0.05F});
    }
}

void paintGullWings(Canvas& canvas, const Box& body, float spacing, bool allRound)
{
    constexpr float REACH = 0.018F;
    const float thick = spacing * 0.5F;
    canvas.setBrush(WHITE);
    for (float x = body.left + spacing; x < body.right - spacing * 0.5F; x += spacing) {
        canvas.paint(
            {x - thick / 2, body.top - REACH, x + thick / 2, body.top},
            [&](float px, float py) {
                return roundedBox(px, py, {x - thick / 2, body.top - REACH, x + thick / 2, body.top}, 0);
            },
            metal);
        canvas.paint(
            {x - thick / 2, body.bottom, x + thick / 2, body.bottom + REACH},
            [&](float px, float py) {
                return roundedBox(px, py, {x - thick / 2, body.bottom, x + thick / 2, body.bottom + REACH},
                                  0);
            },
            metal);
    }
    if (!allRound)
        return;
    for (float y = body.top + spacing; y < body.bottom - spacing * 0.5F; y += spacing) {
        canvas.fillBox({body.left - REACH, y - thick / 2, body.left, y + thick / 2}, TIN);
        canvas.fillBox({body.right, y - thick / 2, body.right + REACH, y + thick / 2}, TIN);
    }
}

void paintChip(Canvas& canvas, const Box& body, float spacing, bool allRound, const std::string& name)
{
    paintGullWings(canvas, body, spacing, allRound);
    canvas.paint(
        body, [&](float x, float y) { return roundedBox(x, y, body, 0.006F); },
        [&](float x, float y) {
            const float edge = -roundedBox(x, y, body, 0.006F);
            const float bevel = x + y < body.left + body.top + 2 * edge + 0.02F ? 0.09F : -0.05F;
            return PLASTIC + bevel * ramp(0.010F, 0, edge) + 0.02F * noise(x * 300, y * 300);
        });
    canvas.fillCircle({body.left + 0.02F, body.bottom - 0.02F}, 0.007F, 0.26F);
    const float height = std::min(0.028F, (body.bottom - body.top) * 0.24F);
    const float length = static_cast<float>(name.size()) * height * 6 / 7;
    const Point corner{(body.left + body.right - length) / 2, (body.top + body.bottom) / 2 - height};
    canvas.write(name, corner, height, 0.62F);
    canvas.write("4207", {corner.x, corner.y + height * 1.5F}, height * 0.7F, 0.50F);
}

void paintResistor(Canvas& canvas, Point center, bool upright, const std::string& name)
{
    const float w = upright ? 0.012F : 0.022F, h = upright ? 0.022F : 0.012F;
    canvas.setBrush(WHITE);
    canvas.fillBox({center.x - w, center.y - h, center.x + w, center.y + h}, TIN, 0.003F);
    canvas.setBrush(upright ? CERAMIC : WHITE);
    const float bw = upright ? w : w * 0.55F, bh = upright ? h * 0.55F : h;
    canvas.fillBox({center.x - bw, center.y - bh, center.x + bw, center.y + bh}, upright ? 0.46F : 0.16F);
    canvas.setBrush(WHITE);
    canvas.write(name, {center.x - 0.018F, center.y - h - 0.021F}, 0.014F, SILK);
}

void paintCan(Canvas& canvas, Point center, float radius)
{
    canvas.setBrush(BLUE_STEEL);
    canvas.fillCircle({center.x + 0.010F, center.y + 0.012F}, radius, 0.12F);
    canvas.paint(
        {center.x - radius, center.y - radius, center.x + radius, center.y + radius},
        [&](float x, float y) { return circle(x, y, center, radius); },
        [&](float x, float y) {
            const float angle = std::atan2(y - center.y, x - center.x);
            const float rim = ramp(radius * 0.80F, radius, circle(x, y, center, 0));
            const float brushed = 0.70F + 0.16F * std::cos(2 * angle + 0.9F);
            const bool minus = x < center.x - radius * 0.45F;
            return mix(minus ? 0.10F : brushed, 0.45F, rim);
        });
}

void paintHeader(Canvas& canvas, Point corner, int pins)
{
    constexpr float SPACING = 0.034F;
    const float length = static_cast<float>(pins) * SPACING;
    canvas.setBrush(WHITE);
    canvas.fillBox(
        {corner.x - 0.004F, corner.y - 0.004F, corner.x + length + 0.004F, corner.y + 2 * SPACING + 0.004F},
        SILK);
    canvas.fillBox({corner.x, corner.y, corner.x + length, corner.y + 2 * SPACING}, 0.10F);
    canvas.setBrush(GOLD);
    for (int pin = 0; pin < pins; ++pin) {
        for (int row = 0; row < 2; ++row) {
            const float x = corner.x + (static_cast<float>(pin) + 0.5F) * SPACING;
            const float y = corner.y + (static_cast<float>(row) + 0.5F) * SPACING;
            canvas.fillBox({x - 0.007F, y - 0.007F, x + 0.007F, y + 0.007F}, 0.88F, 0.002F);
        }
    }
}

void paintDrilledRow(Canvas& canvas, Point start, int count)
{
    for (int i = 0; i < count; ++i)
        paintPad(canvas, {start.x + static_cast<float>(i) * 0.036F, start.y}, 0.013F, 0.007F);
}

void paintTraces(Canvas& canvas, float left, float right)
{
    paintBus(canvas, {left + 0.32F, 0.55F}, 8, 0.19F, -0.20F);
    paintBus(canvas, {left + 0.42F, 0.55F}, 7, 0.13F, 0.27F);
    paintBus(canvas, {right - 0.30F, 0.34F}, 6, 0.20F, -0.16F);
    for (int i = 0; i < 7; ++i) {
        const float offset = static_cast<float>(i) * 0.0145F;
        const float turn = offset * 0.414F; // keeps the distance constant round a bend of 45 degrees
        const float x = left + 0.33F + offset, y = 0.34F + offset;
        paintTrace(canvas, {{x, 0.32F}, {x, 0.25F + turn}, {x + 0.06F, 0.19F + turn}, {x + 0.06F, 0.10F}});
        paintTrace(canvas, {{left + 0.50F, y},
                            {left + 0.58F + turn, y},
                            {left + 0.66F + turn, y - 0.08F},
                            {right - 0.34F, y - 0.08F}});
    }
    for (int i = 0; i < 12; ++i)
        paintVia(canvas,
                 {mix(left + 0.12F, right - 0.08F, scatter(i, 17)), mix(0.10F, 0.81F, scatter(i, 18))});
}

void paintParts(Canvas& canvas, float left, float right)
{
    paintChip(canvas, {left + 0.26F, 0.30F, left + 0.51F, 0.55F}, 0.0145F, true, "QX40");
    paintChip(canvas, {right - 0.36F, 0.24F, right - 0.20F, 0.34F}, 0.022F, false, "M16");
    paintChip(canvas, {right - 0.36F, 0.60F, right - 0.16F, 0.70F}, 0.022F, false, "DRV8");
    paintChip(canvas, {left + 0.60F, 0.72F, left + 0.72F, 0.80F}, 0.020F, false, "OP2");
    paintCan(canvas, {left + 0.14F, 0.31F}, 0.055F);
    paintCan(canvas, {left + 0.14F, 0.46F}, 0.055F);
    paintCan(canvas, {right - 0.13F, 0.46F}, 0.045F);
    paintHeader(canvas, {left + 0.34F, 0.075F}, 10);
    paintDrilledRow(canvas, {left + 0.22F, 0.925F}, 12);
    paintDrilledRow(canvas, {right - 0.44F, 0.925F}, 8);
    for (int i = 0; i < 5; ++i)
        paintResistor(canvas, {left + 0.60F + 0.062F * static_cast<float>(i), 0.50F}, false,
                      "R" + std::to_string(11 + i));
    for (int i = 0; i < 4; ++i)
        paintResistor(canvas, {left + 0.10F + 0.055F * static_cast<float>(i), 0.64F}, true,
                      "C" + std::to_string(3 + i));
    canvas.setBrush(WHITE);
    canvas.write("U1", {left + 0.26F, 0.245F}, 0.024F, SILK);
    canvas.write("BOARD 17-B", {right - 0.50F, 0.845F}, 0.030F, SILK);
}

} // namespace

void paintCircuitBoard(Canvas& canvas)
{
    const float left = MARGIN, right = canvas.right() - MARGIN;
    paintBare(canvas);
    paintTraces(canvas, left, right);
    paintHoles(canvas);
    paintParts(canvas, left, right);
}

void paintLineOfLight(Canvas& canvas, float phase)
{
    std::vector<float> light; // by column
    for (int column = 0; column < canvas.columns(); ++column) {
        const float x = canvas.right() * static_cast<float>(column) / static_cast<float>(canvas.columns());
        const float away = (x - phase * canvas.right()) / 0.07F;
        light.push_back(0.86F + 0.50F * std::exp(-away * away));
    }
    canvas.dim({0, 0, canvas.right(), canvas.bottom()},
               [&](float x, float) { return light[static_cast<std::size_t>(canvas.column(x))]; });
}

} // namespace simulation
