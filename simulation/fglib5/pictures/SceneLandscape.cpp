// SPDX-License-Identifier: MIT
#include "pictures/Canvas.h"
#include "pictures/SceneParts.h"

namespace simulation {

namespace {

constexpr float MEADOW_TOP = 0.70F;

constexpr auto SKY = hue(0.45F, 0.68F, 1.0F), SUNLIGHT = hue(1, 0.86F, 0.60F), HAZE = hue(0.70F, 0.82F, 1);
constexpr auto GRASS = hue(0.56F, 0.80F, 0.26F), DRY_GRASS = hue(0.80F, 0.80F, 0.38F),
               NEEDLES = hue(0.35F, 0.62F, 0.36F);
constexpr auto EARTH = hue(0.86F, 0.70F, 0.50F), WOOD = hue(0.62F, 0.42F, 0.26F),
               PLASTER = hue(1, 0.94F, 0.80F);
constexpr auto TILES = hue(0.85F, 0.34F, 0.24F), GLASS = hue(0.5F, 0.66F, 0.85F);

struct Range
{
    float foot; ///< y of the foot of the mountains
    float height;
    float coarse; ///< peaks per unit
    float shade;
    float seed;
    bool snow;
    Colour rock;
};

Point sunOf(const Canvas& canvas)
{
    return {canvas.right() * 0.80F, 0.17F};
}

Point millOf(const Canvas& canvas)
{
    return {canvas.right() * 0.22F, 0.47F};
}

void paintSky(Canvas& canvas)
{
    const auto sun = sunOf(canvas);
    canvas.paint(
        {0, 0, canvas.right(), MEADOW_TOP}, [](float, float) { return -1.0F; },
        [&](float x, float y) {
            const float blue = mix(0.42F, 0.80F, ramp(-0.1F, 0.65F, y));
            const float cloud = cloudiness(x * 1.7F + 11, y * 5.5F, 4);
            const float shade = mix(blue, 0.93F, ramp(0.50F, 0.78F, cloud) * ramp(0.55F, 0.1F, y));
            const float fromSun = circle(x, y, sun, 0);
            const float glow = std::exp(-fromSun * 9);
            const auto air = mix(SKY, WHITE, ramp(0.50F, 0.78F, cloud) * ramp(0.55F, 0.1F, y));
            return tinted(shade + 0.20F * glow + 0.06F * std::exp(-fromSun * 3), mix(air, SUNLIGHT, glow));
        });
    canvas.setBrush(SUNLIGHT);
    canvas.fillCircle(sun, 0.055F, 1);
}

float ridge(const Range& range, float x)
{
    // Folding the noise at its middle turns bumps into peaks.
    const float bumps = cloudiness(x * range.coarse + range.seed, range.seed, 5);
    return range.foot - range.height * (1 - 2 * std::abs(bumps - 0.5F));
}

struct Skyline
{
    std::vector<float> y;     ///< by column
    std::vector<float> slope; ///< positive where it falls to the right, towards the sun
};

Skyline skylineOf(const Canvas& canvas, const Range& range)
{
    constexpr float REACH = 0.03F; // evens out single rocks
    Skyline line;
    for (int column = 0; column < canvas.columns(); ++column) {
        const float x = canvas.right() * static_cast<float>(column) / static_cast<float>(canvas.columns());
        line.y.push_back(ridge(range, x));
        line.slope.push_back((ridge(range, x + REACH) - ridge(range, x - REACH)) / (2 * REACH));
    }
    return line;
}

Colour mountainShade(const Range& range, float x, float y, float depth, float slope)
{
    const float lit = std::clamp(slope, -0.8F, 0.8F);
    const float rock = cloudiness(x * 22 + y * 9, y * 30 - x * 12, 3) - 0.5F;
    float shade = range.shade + 0.09F * lit * std::exp(-depth * 9) + 0.16F * rock;
    auto surface = range.rock;
    if (range.snow) {
        const float line = 0.06F + 0.12F * (noise(x * 30, y * 9) - 0.35F);
        const float snow = ramp(0.42F, 0.32F, y) * ramp(line, line - 0.03F, depth);
        shade = mix(shade, 0.90F + 0.10F * lit, snow);
        surface = mix(surface, WHITE, snow);
    }
    const float haze = ramp(0, 0.5F, depth); // in the valley
    return tinted(mix(shade, range.shade + 0.16F, haze), mix(surface, HAZE, haze));
}

void paintRange(Canvas& canvas, const Range& range)
{
    const auto line = skylineOf(canvas, range);
    const auto at = [&](const std::vector<float>& values, float x) {
        return values[static_cast<std::size_t>(canvas.column(x))];
    };
    canvas.paint(
        {0, range.foot - range.height, canvas.right(), MEADOW_TOP + 0.03F},
        [&](float x, float y) { return at(line.y, x) - y; },
        [&](float x, float y) { return mountainShade(range, x, y, y - at(line.y, x), at(line.slope, x)); });
}

void paintMeadow(Canvas& canvas)
{
    const auto edge = [](float x) {
        return MEADOW_TOP + 0.02F * std::sin(x * 4) - 0.03F * std::sin(x * 1.7F + 1);
    };
    canvas.paint(
        {0, MEADOW_TOP - 0.06F, canvas.right(), canvas.bottom()},
        [&](float x, float y) { return edge(x) - y; },
        [&](float x, float y) {
            const float near = ramp(MEADOW_TOP, 1, y);
            const float grass = cloudiness(x * mix(90, 30, near), y * mix(260, 60, near), 3);
            return tinted(mix(0.50F, 0.30F, near) + (grass - 0.5F) * mix(0.10F, 0.30F, near),
                          mix(GRASS, DRY_GRASS, ramp(0.35F, 0.75F, grass)));
        });
    // A path winds from the house to the lower edge, wider the nearer it comes.
    const float house = canvas.right() * 0.615F;
    canvas.setBrush(EARTH);
    canvas.paint(
        {0, 0.78F, canvas.right(), canvas.bottom()},
        [&](float x, float y) {
            const float t = y - 0.78F;
            const float middle = house - 1.1F * t + 0.05F * std::sin(t * 26);
            return std::abs(x - middle) - 0.012F - 0.22F * t;
        },
        [](float x, float y) { return 0.66F + 0.14F * (cloudiness(x * 50, y * 90, 2) - 0.5F); });
}

void paintConifer(Canvas& canvas, Point foot, float height)
{
    const float width = height * 0.42F;
    canvas.setBrush(WOOD);
    canvas.fillBox({foot.x - height * 0.03F, foot.y - height * 0.15F, foot.x + height * 0.03F, foot.y},
                   0.16F);
    constexpr int TIERS = 5;
    canvas.setBrush(NEEDLES);
    for (int tier = 0; tier < TIERS; ++tier) {
        const float t = static_cast<float>(tier) / TIERS;
        const float low = foot.y - height * (0.10F + 0.68F * t);
        const float half = width / 2 * (1 - 0.78F * t);
        const float top = low - height * 0.32F;
        const auto distance = [&](float x, float y) {
            const float droop = 0.06F * half * std::sin((x - foot.x) / half * 14);
            return std::max(std::abs(x - foot.x) - half * (y - top) / (low - top), y - low + droop) * 0.8F;
        };
        canvas.paint({foot.x - half, top, foot.x + half, low + 0.1F * half}, distance, [&](float x, float y) {
            const float side = (x - foot.x) / half; // the sun stands on the right
            const float needles = cloudiness(x * 160 / (height * 4), y * 240 / (height * 4), 2) - 0.5F;
            return 0.17F + 0.08F * side + 0.10F * needles - 0.05F * ramp(top, low, y);
        });
    }
}

void paintForest(Canvas& canvas)
{
    const auto trees = static_cast<int>(canvas.right() * 26);
    for (int i = 0; i < trees; ++i) {
        const float x = (static_cast<float>(i) + scatter(i, 40)) / 26;
        const bool clearing =
            std::abs(x / canvas.right() - 0.22F) < 0.10F || std::abs(x / canvas.right() - 0.62F) < 0.13F;
        if (!clearing && scatter(i, 41) > 0.25F)
            paintConifer(canvas, {x, MEADOW_TOP + 0.03F + 0.02F * scatter(i, 42)},
                         0.09F + 0.07F * scatter(i, 43));
    }
}

void paintForeground(Canvas& canvas)
{
    const float right = canvas.right();
    paintConifer(canvas, {right * 0.865F, 0.93F}, 0.46F);
    paintConifer(canvas, {right * 0.955F, 1.00F}, 0.60F);
    paintConifer(canvas, {right * 0.035F, 0.97F}, 0.50F);
}

void paintHouse(Canvas& canvas)
{
    const float left = canvas.right() * 0.55F, right = left + 0.20F, side = right + 0.10F;
    const float ground = 0.79F, eaves = 0.66F, top = 0.56F, middle = (left + right) / 2;
    canvas.setBrush(TILES);
    canvas.fillBox({right - 0.045F, 0.535F, right - 0.020F, 0.62F}, 0.42F); // chimney
    canvas.setBrush(PLASTER);
    canvas.fillPolygon({{right, eaves}, {side, eaves - 0.012F}, {side, ground - 0.015F}, {right, ground}},
                       0.90F);
    canvas.fillBox({left, eaves, right, ground}, 0.72F);
    canvas.fillPolygon({{middle, top}, {right, eaves}, {left, eaves}}, 0.72F);
    canvas.setBrush(TILES);
    canvas.fillPolygon({{middle, top},
                        {middle + 0.11F, top - 0.012F},
                        {side + 0.018F, eaves - 0.002F},
                        {right + 0.012F, eaves + 0.012F}},
                       0.36F);
    canvas.fillStroke({middle, top}, {left - 0.014F, eaves + 0.014F}, 0.014F, 0.26F);
    canvas.fillStroke({middle, top}, {right + 0.012F, eaves + 0.012F}, 0.014F, 0.26F);
    canvas.setBrush(WOOD);
    canvas.fillBox({middle - 0.02F, ground - 0.075F, middle + 0.02F, ground}, 0.24F);
    canvas.setBrush(GLASS);
    for (const float x : {left + 0.04F, right - 0.04F}) {
        canvas.fillBox({x - 0.022F, 0.693F, x + 0.022F, 0.737F}, 0.95F);
        canvas.fillBox({x - 0.017F, 0.698F, x - 0.002F, 0.732F}, 0.20F);
        canvas.fillBox({x + 0.002F, 0.698F, x + 0.017F, 0.732F}, 0.20F);
    }
    canvas.fillCircle({middle, 0.625F}, 0.016F, 0.20F);
    canvas.fillBox({right + 0.035F, 0.69F, right + 0.065F, 0.73F}, 0.30F);
}

void paintMillTower(Canvas& canvas)
{
    const auto hub = millOf(canvas);
    const float foot = 0.80F;
    canvas.setBrush(PLASTER);
    const auto halfWidth = [&](float y) { return mix(0.038F, 0.066F, (y - hub.y) / (foot - hub.y)); };
    canvas.paint(
        {hub.x - 0.08F, hub.y, hub.x + 0.08F, foot},
        [&](float x, float y) {
            return std::max(std::abs(x - hub.x) - halfWidth(y), std::max(hub.y - y, y - foot));
        },
        [&](float x, float y) {
            const float side = (x - hub.x) / halfWidth(y);
            const float course = std::fmod(y * 60, 1.0F) < 0.12F ? -0.06F : 0;
            return 0.68F + 0.22F * side - 0.12F * side * side + course;
        });
    canvas.setBrush(WOOD);
    canvas.fillPolygon({{hub.x - 0.012F, hub.y - 0.055F},
                        {hub.x + 0.012F, hub.y - 0.055F},
                        {hub.x + 0.046F, hub.y + 0.004F},
                        {hub.x - 0.046F, hub.y + 0.004F}},
                       0.25F);
    canvas.fillBox({hub.x - 0.012F, 0.58F, hub.x + 0.012F, 0.61F}, 0.18F);
    canvas.fillBox({hub.x - 0.016F, foot - 0.06F, hub.x + 0.016F, foot}, 0.18F);
}

void paintSail(Canvas& canvas, Point hub, float angle)
{
    const float c = std::cos(angle), s = std::sin(angle);
    const auto at = [&](float along, float across) {
        return Point{hub.x + along * c - across * s, hub.y + along * s + across * c};
    };
    canvas.setBrush(PLASTER);
    canvas.fillPolygon({at(0.06F, 0), at(0.225F, 0), at(0.225F, 0.045F), at(0.06F, 0.035F)}, 0.93F);
    canvas.setBrush(WOOD);
    for (const float along : {0.06F, 0.10F, 0.14F, 0.18F, 0.223F})
        canvas.fillStroke(at(along, 0), at(along, 0.042F), 0.003F, 0.35F);
    canvas.fillStroke(hub, at(0.23F, 0), 0.009F, 0.17F);
}

} // namespace

void paintLandscape(Canvas& canvas)
{
    paintSky(canvas);
    paintRange(canvas, {0.66F, 0.46F, 1.3F, 0.52F, 5.2F, true, hue(0.62F, 0.70F, 0.86F)});
    paintRange(canvas, {0.70F, 0.27F, 1.9F, 0.40F, 31.7F, false, hue(0.58F, 0.68F, 0.70F)});
    paintRange(canvas, {0.74F, 0.13F, 2.6F, 0.30F, 74.1F, false, hue(0.50F, 0.66F, 0.50F)});
    paintMeadow(canvas);
    paintForest(canvas);
    paintHouse(canvas);
    paintMillTower(canvas);
    paintForeground(canvas);
}

// Four equal sails: the picture repeats after a quarter turn.
void paintWindmillSails(Canvas& canvas, float phase)
{
    const auto hub = millOf(canvas);
    for (int sail = 0; sail < 4; ++sail)
        paintSail(canvas, hub, (static_cast<float>(sail) + phase) * PI / 2 + 0.3F);
    canvas.fillCircle(hub, 0.013F, 0.12F);
}

} // namespace simulation
