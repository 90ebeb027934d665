// SPDX-License-Identifier: MIT
#include "pictures/Canvas.h"
#include "pictures/SceneParts.h"

namespace simulation {

namespace {

constexpr float PITCH = 0.37F; ///< from bottle to bottle
constexpr float BELT_TOP = 0.865F;
constexpr float CAP_TOP = 0.115F;
constexpr float LIQUID_LEVEL = 0.335F;

constexpr auto WALL = hue(0.90F, 0.96F, 1), STEEL = hue(0.86F, 0.94F, 1), BRASS = hue(1, 0.76F, 0.34F);
constexpr auto GREEN_GLASS = hue(0.42F, 0.86F, 0.48F), LIQUID = hue(0.90F, 0.62F, 0.18F),
               PAPER_LABEL = hue(1, 0.95F, 0.84F);
constexpr auto PRINT = hue(0.90F, 0.20F, 0.22F);

// Half the bottle's width at a height of the picture.
float profile(float y)
{
    constexpr float NECK = 0.034F, BODY = 0.118F;
    if (y < 0.165F)
        return 0.043F; // cap
    if (y < 0.20F)
        return 0.041F; // ring below the cap
    const float shoulder = mix(NECK, BODY, ramp(0.29F, 0.47F, y));
    return shoulder - 0.018F * ramp(BELT_TOP - 0.03F, BELT_TOP, y); // rounded foot
}

void paintBackWall(Canvas& canvas)
{
    const float middle = canvas.right() / 2;
    canvas.setBrush(WALL);
    canvas.cover([&](float x, float y) {
        const float away = circle(x, y * 1.1F, {middle, 0.45F}, 0);
        return 0.96F - 0.30F * away * away - 0.02F * noise(x * 3, y * 3);
    });
    canvas.setBrush(STEEL);
    // Guide rail behind the bottles, round steel.
    canvas.paint(
        {0, 0.615F, canvas.right(), 0.665F}, [](float, float y) { return std::abs(y - 0.64F) - 0.022F; },
        [](float, float y) { return 0.45F + 0.40F * std::cos((y - 0.632F) / 0.022F * 1.5F); });
}

void paintBelt(Canvas& canvas, float shift)
{
    canvas.setBrush(STEEL);
    constexpr float LINK = PITCH / 4; // divides the pitch, so that the belt repeats with the bottles
    canvas.paint(
        {0, BELT_TOP, canvas.right(), canvas.bottom()}, [](float, float y) { return BELT_TOP - y; },
        [&](float x, float y) {
            const float t = std::fmod(x - shift + 10 * PITCH, LINK) / LINK;
            const float gap = ramp(0.06F, 0, std::min(t, 1 - t));
            const float steel = 0.52F + 0.22F * ramp(BELT_TOP + 0.02F, BELT_TOP, y) - 0.9F * (y - BELT_TOP);
            const float hole = ramp(0.004F, -0.004F,
                                    roundedBox(t * LINK, y, {0.025F, 0.915F, LINK - 0.025F, 0.945F}, 0.012F));
            return mix(mix(steel + 0.03F * std::cos(t * 2 * PI), 0.14F, gap), 0.10F, hole);
        });
    canvas.paint(
        {0, BELT_TOP - 0.004F, canvas.right(), BELT_TOP + 0.006F},
        [](float, float y) { return std::abs(y - BELT_TOP) - 0.004F; }, [](float, float) { return 0.30F; });
}

// Brightness of the label at a position relative to its middle; 1 is blank paper.
float labelPrint(float x, float y)
{
    const auto printed = [](float distance) { return ramp(0.0016F, -0.0016F, distance); };
    float print = 1;
    for (const float bar : {0.515F, 0.785F})
        print = std::min(print, 1 - 0.75F * printed(std::abs(y - bar) - 0.010F));
    for (const float line : {0.675F, 0.705F, 0.735F}) {
        const float length = line == 0.705F ? 0.070F : 0.050F;
        print =
            std::min(print, 1 - 0.65F * printed(std::max(std::abs(y - line) - 0.006F, std::abs(x) - length)));
    }
    const float badge = circle(x, y, {0, 0.60F}, 0.050F);
    print = mix(print, 0.30F, printed(badge));
    print = mix(print, 0.95F, printed(std::abs(badge + 0.008F) - 0.002F));
    // A drop in the badge: a circle with a point on top.
    const float drop =
        std::min(circle(x, y, {0, 0.612F}, 0.019F),
                 std::max(std::abs(x) - 0.34F * (y - 0.563F), std::max(y - 0.605F, 0.563F - y)));
    return mix(print, 0.95F, printed(drop));
}

float glassShade(float u, float y)
{
    const float edge = std::abs(u);
    const bool filled = y > LIQUID_LEVEL;
    float shade = filled ? 0.34F : 0.66F;
    shade *= 1 - 0.75F * edge * edge * edge * edge; // glass is darker at its edges
    shade += (filled ? 0.22F : 0.10F) * std::exp(-16 * (u - 0.12F) * (u - 0.12F)); // light through the middle
    shade += 0.45F * std::exp(-180 * (u + 0.62F) * (u + 0.62F));                   // reflection of the lamp
    shade += 0.16F * std::exp(-300 * (u - 0.72F) * (u - 0.72F));
    shade -= 0.22F * ramp(0.008F, 0, std::abs(y - LIQUID_LEVEL));
    return shade - 0.18F * ramp(BELT_TOP - 0.05F, BELT_TOP, y);
}

float capShade(float u, float y)
{
    const float around = std::asin(std::clamp(u, -1.0F, 1.0F));
    const float ribs = y > 0.128F && y < 0.165F ? 0.06F * std::cos(around * 34) : 0;
    return 0.20F + 0.30F * std::exp(-5 * (u + 0.45F) * (u + 0.45F)) + ribs;
}

Colour bottleShade(float x, float y)
{
    const float u = x / profile(y);
    if (y < 0.20F)
        return tinted(capShade(u, y), BRASS);
    const bool label = y > 0.49F && y < 0.81F;
    if (!label)
        return tinted(glassShade(u, y), y > LIQUID_LEVEL ? LIQUID : GREEN_GLASS);
    const float around = std::asin(std::clamp(u, -1.0F, 1.0F));
    const float light = 0.55F + 0.42F * std::cos(around + 0.45F);
    const float print = labelPrint(around * 0.118F, y);
    return tinted(print * light, mix(PRINT, PAPER_LABEL, ramp(0.3F, 0.9F, print)));
}

void paintBottle(Canvas& canvas, float middle)
{
    canvas.paint(
        {middle - 0.12F, CAP_TOP, middle + 0.12F, BELT_TOP},
        [&](float x, float y) {
            const float steepness = (profile(y + 0.001F) - profile(y - 0.001F)) / 0.002F;
            const float side =
                (std::abs(x - middle) - profile(y)) / std::hypot(1.0F, std::min(steepness, 2.0F));
            return std::max(side, std::max(CAP_TOP - y, y - BELT_TOP));
        },
        [&](float x, float y) { return bottleShade(x - middle, y); });
}

// The dark foot of the bottle, mirrored in the steel.
void paintReflection(Canvas& canvas, float middle)
{
    const Box box{middle - 0.13F, BELT_TOP + 0.006F, middle + 0.13F, BELT_TOP + 0.06F};
    canvas.dim(box, [&](float x, float y) {
        const float down = y < box.top ? 0 : ramp(box.bottom, box.top, y);
        return 1 - 0.6F * down * ramp(0.12F, 0.07F, std::abs(x - middle));
    });
}

} // namespace

void paintBottlingHall(Canvas& canvas)
{
    paintBackWall(canvas);
}

// After one pitch every bottle is at its neighbour's position, so the pictures repeat.
void paintBottles(Canvas& canvas, float phase)
{
    const float shift = phase * PITCH;
    paintBelt(canvas, shift);
    for (float middle = shift - PITCH / 2; middle < canvas.right() + PITCH; middle += PITCH) {
        paintReflection(canvas, middle);
        paintBottle(canvas, middle);
    }
}

} // namespace simulation
