/// \file
/// A grey picture under construction: shapes with smooth edges and any shading, painted one over the other.
///
/// Positions and sizes are in units of the picture's height (x grows to the right, y downwards), so that a
/// scene looks the same at every resolution. Luminance runs from 0 (black) to 1 (white). Everything is
/// deterministic.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

namespace simulation {

struct Point
{
    float x, y;
};

struct Box
{
    float left, top, right, bottom;
};

// --- numbers
// ------------------------------------------------------------------------------------------------

inline constexpr float PI = 3.14159265F;

inline float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}

/// 0 below \p from, 1 above \p to, smooth between.
inline float ramp(float from, float to, float x)
{
    const float t = std::clamp((x - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

/// A number from 0 to 1 that looks random and belongs to (x, y).
inline float scatter(int x, int y)
{
    auto h = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U;
    h = (h ^ (h >> 15U)) * 0x2C1B3C6DU;
    h = (h ^ (h >> 12U)) * 0x297A2D39U;
    return static_cast<float>((h ^ (h >> 15U)) >> 8U) / 16777216.0F;
}

/// Soft noise from 0 to 1 with features of size 1.
float noise(float x, float y);

/// The sum of \p octaves noises, each twice as fine and half as strong as the one before; 0 to 1.
float cloudiness(float x, float y, int octaves);

// --- shapes: distance of a point from the edge, negative inside
// -----------------------------------------------

inline float circle(float x, float y, Point center, float radius)
{
    return std::hypot(x - center.x, y - center.y) - radius;
}

inline float roundedBox(float x, float y, const Box& box, float radius)
{
    const float dx = std::max(box.left - x, x - box.right) + radius;
    const float dy = std::max(box.top - y, y - box.bottom) + radius;
    return std::hypot(std::max(dx, 0.0F), std::max(dy, 0.0F)) + std::min(std::max(dx, dy), 0.0F) - radius;
}

/// A line of some thickness with round ends.
inline float stroke(float x, float y, Point from, Point to, float thickness)
{
    const float ex = to.x - from.x, ey = to.y - from.y;
    const float length = ex * ex + ey * ey;
    const float t =
        length == 0 ? 0 : std::clamp(((x - from.x) * ex + (y - from.y) * ey) / length, 0.0F, 1.0F);
    return std::hypot(x - from.x - t * ex, y - from.y - t * ey) - thickness / 2;
}

// --- the canvas
// -----------------------------------------------------------------------------------------------

class Canvas
{
public:
    Canvas(int width, int height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    /// Right edge of the picture in units; the lower edge is bottom().
    float right() const { return static_cast<float>(m_width) / m_scale; }
    float bottom() const { return static_cast<float>(m_height) / m_scale; }
    /// The column of pixels that a position lies in.
    int column(float x) const { return std::clamp(static_cast<int>(x * m_scale), 0, m_width - 1); }
    float& at(int x, int y) { return m_pixels[index(x, y)]; }
    const std::vector<float>& pixels() const { return m_pixels; }

    /// Gives every pixel shade(x, y).
    template <class Shade>
    void cover(Shade shade)
    {
        for (int row = 0; row < m_height; ++row)
            for (int column = 0; column < m_width; ++column)
                at(column, row) = shade(unit(column), unit(row));
    }

    /// Paints shade(x, y) where distance(x, y) is negative, within \p box.
    template <class Distance, class Shade>
    void paint(const Box& box, Distance distance, Shade shade)
    {
        const auto [left, right] = pixelRange(box.left, box.right, m_width);
        const auto [top, bottom] = pixelRange(box.top, box.bottom, m_height);
        for (int row = top; row < bottom; ++row) {
            for (int column = left; column < right; ++column) {
                const float x = unit(column), y = unit(row);
                const float cover = std::clamp(0.5F - distance(x, y) * m_scale, 0.0F, 1.0F);
                if (cover > 0)
                    at(column, row) = mix(at(column, row), shade(x, y), cover);
            }
        }
    }

    void fillCircle(Point center, float radius, float shade);
    void fillBox(const Box& box, float shade, float cornerRadius = 0);
    void fillStroke(Point from, Point to, float thickness, float shade);
    /// A convex polygon, its corners in clockwise order as seen on the screen.
    void fillPolygon(const std::vector<Point>& corners, float shade);
    /// Block letters (A-Z, 0-9, blank, - . /) of this height, from their upper left corner.
    void write(std::string_view text, Point corner, float letterHeight, float shade);

    /// The picture in 8 bit, with a sensor's noise that differs from one \p image to the next.
    std::vector<std::uint8_t> exposed(int image) const;

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
    }
    float unit(int pixel) const { return (static_cast<float>(pixel) + 0.5F) / m_scale; }
    std::pair<int, int> pixelRange(float from, float to, int end) const;

    int m_width;
    int m_height;
    float m_scale; ///< pixels a unit
    std::vector<float> m_pixels;
};

} // namespace simulation
