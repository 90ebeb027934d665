// SPDX-License-Identifier: MIT
#include "pictures/Canvas.h"

#include "pictures/BlockLetters.h"

#include <limits>

namespace simulation {

namespace {

// The noise's lattice, which repeats every 256 units. A look-up is several times as fast as computing a
// value.
class Lattice
{
public:
    Lattice()
    {
        for (std::size_t i = 0; i < m_values.size(); ++i)
            m_values[i] = scatter(static_cast<int>(i % SIDE), static_cast<int>(i / SIDE));
    }

    float operator()(int x, int y) const
    {
        return m_values[static_cast<std::size_t>(y & (SIDE - 1)) * SIDE +
                        static_cast<std::size_t>(x & (SIDE - 1))];
    }

private:
    static constexpr int SIDE = 256;

    std::vector<float> m_values = std::vector<float>(static_cast<std::size_t>(SIDE) * SIDE);
};

} // namespace

float noise(float x, float y)
{
    static const Lattice LATTICE;
    const float fx = std::floor(x), fy = std::floor(y);
    const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
    const float tx = ramp(0, 1, x - fx), ty = ramp(0, 1, y - fy);
    return mix(mix(LATTICE(ix, iy), LATTICE(ix + 1, iy), tx),
               mix(LATTICE(ix, iy + 1), LATTICE(ix + 1, iy + 1), tx), ty);
}

float cloudiness(float x, float y, int octaves)
{
    float sum = 0, weight = 0.5F, total = 0;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * noise(x, y);
        total += weight;
        x = x * 2 + 17.3F;
        y = y * 2 + 9.1F;
        weight /= 2;
    }
    return sum / total;
}

// A very wide picture (of a line camera) shows a strip three units wide, instead of one magnified line.
Canvas::Canvas(int width, int height, const Window& window)
    : m_wholeWidth(width),
      m_wholeHeight(height),
      m_window(window),
      m_scale(std::max(static_cast<float>(height), static_cast<float>(width) / 3)),
      m_pixels(static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height))
{}

Window Canvas::pixelRange(const Box& box) const
{
    const auto range = [this](float from, float to, int origin, int end) {
        const auto limit = static_cast<float>(end);
        const auto place = [&](float pixel) {
            return static_cast<int>(std::clamp(pixel - static_cast<float>(origin), 0.0F, limit));
        };
        return std::pair(place(std::floor(from * m_scale) - 1), place(std::ceil(to * m_scale) + 1));
    };
    const auto [left, right] = range(box.left, box.right, m_window.x, m_window.width);
    const auto [top, bottom] = range(box.top, box.bottom, m_window.y, m_window.height);
    return {left, top, right - left, bottom - top};
}

void Canvas::blend(int x, int y, const Colour& colour, float cover)
{
    auto& pixel = m_pixels[index(x, y)];
    const auto blended = [cover](std::uint16_t below, float above) {
        return lightOf(mix(static_cast<float>(below) / Light::FULL_LIGHT, above, cover));
    };
    pixel = {blended(pixel.red, colour.red), blended(pixel.green, colour.green),
             blended(pixel.blue, colour.blue)};
}

void Canvas::average(const Canvas& other, float share)
{
    const auto mean = [share](std::uint16_t own, std::uint16_t given) {
        return static_cast<std::uint16_t>(mix(own, given, share) + 0.5F);
    };
    for (std::size_t i = 0; i < m_pixels.size(); ++i) {
        auto& pixel = m_pixels[i];
        const auto& given = other.m_pixels[i];
        pixel = {mean(pixel.red, given.red), mean(pixel.green, given.green), mean(pixel.blue, given.blue)};
    }
}

void Canvas::scale(int x, int y, float factor)
{
    auto& pixel = m_pixels[index(x, y)];
    const auto scaled = [factor](std::uint16_t light) {
        return lightOf(static_cast<float>(light) / Light::FULL_LIGHT * factor);
    };
    pixel = {scaled(pixel.red), scaled(pixel.green), scaled(pixel.blue)};
}

void Canvas::fillCircle(Point center, float radius, float shade)
{
    paint(
        {center.x - radius, center.y - radius, center.x + radius, center.y + radius},
        [&](float x, float y) { return circle(x, y, center, radius); }, [&](float, float) { return shade; });
}

void Canvas::fillBox(const Box& box, float shade, float cornerRadius)
{
    paint(
        box, [&](float x, float y) { return roundedBox(x, y, box, cornerRadius); },
        [&](float, float) { return shade; });
}

void Canvas::fillStroke(Point from, Point to, float thickness, float shade)
{
    const float half = thickness / 2;
    paint(
        {std::min(from.x, to.x) - half, std::min(from.y, to.y) - half, std::max(from.x, to.x) + half,
         std::max(from.y, to.y) + half},
        [&](float x, float y) { return stroke(x, y, from, to, thickness); },
        [&](float, float) { return shade; });
}

void Canvas::fillPolygon(const std::vector<Point>& corners, float shade)
{
    Box box{corners[0].x, corners[0].y, corners[0].x, corners[0].y};
    for (const auto& corner : corners)
        box = {std::min(box.left, corner.x), std::min(box.top, corner.y), std::max(box.right, corner.x),
               std::max(box.bottom, corner.y)};
    const auto distance = [&](float x, float y) {
        float farthest = -std::numeric_limits<float>::max();
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const auto& a = corners[i];
            const auto& b = corners[(i + 1) % corners.size()];
            const float ex = b.x - a.x, ey = b.y - a.y;
            farthest = std::max(farthest, ((x - a.x) * ey - (y - a.y) * ex) / std::hypot(ex, ey));
        }
        return farthest;
    };
    paint(box, distance, [&](float, float) { return shade; });
}

void Canvas::write(std::string_view text, Point corner, float letterHeight, float shade)
{
    const float dot = letterHeight / BLOCK_LETTER_ROWS;
    for (const char letter : text) {
        const auto rows = blockLetter(letter);
        for (int row = 0; row < BLOCK_LETTER_ROWS; ++row) {
            for (int column = 0; column < BLOCK_LETTER_COLUMNS; ++column) {
                if (!blockLetterDot(rows, column, row))
                    continue;
                const float x = corner.x + static_cast<float>(column) * dot;
                const float y = corner.y + static_cast<float>(row) * dot;
                fillBox({x, y, x + dot, y + dot}, shade);
            }
        }
        corner.x += dot * (BLOCK_LETTER_COLUMNS + 1);
    }
}

} // namespace simulation
