// SPDX-License-Identifier: MIT
/// \file
/// Canvas: paints a picture from shapes with smooth edges and any shading, one over the other.
///
/// Positions and sizes are in units of the height of the whole picture (x grows to the right, y downwards),
/// so that a scene looks the same at every resolution. A canvas holds a window of the whole picture. A shade
/// is a luminance, which gets the hue of the brush, or a Colour. Everything is deterministic.
#pragma once

#include "pictures/Colour.h"

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

/// A pseudo-random number from 0 to 1 that depends on (x, y) only.
inline float scatter(int x, int y)
{
    auto h = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U;
    h = (h ^ (h >> 15U)) * 0x2C1B3C6DU;
    h = (h ^ (h >> 12U)) * 0x297A2D39U;
    return static_cast<float>((h ^ (h >> 15U)) >> 8U) / 16777216.0F;
}

/// Soft noise from 0 to 1 with features of size 1.
float noise(float x, float y);

/// The sum of \p octaves noises, each twice as fine and half as strong as the previous one; 0 to 1.
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

/// A part of a picture, in pixels.
struct Window
{
    int x, y, width, height;

    auto operator<=>(const Window&) const = default;
};

class Canvas
{
public:
    /// A canvas for \p window of a picture of this size.
    Canvas(int width, int height, const Window& window);

    int width() const { return m_window.width; }
    int height() const { return m_window.height; }
    /// Right edge of the whole picture in units; the lower edge is bottom().
    float right() const { return static_cast<float>(m_wholeWidth) / m_scale; }
    float bottom() const { return static_cast<float>(m_wholeHeight) / m_scale; }
    /// In the whole picture: number of pixel columns, and the column at a position.
    int columns() const { return m_wholeWidth; }
    int column(float x) const { return std::clamp(static_cast<int>(x * m_scale), 0, m_wholeWidth - 1); }
    /// The pixels of one line of the window.
    const Light* line(int y) const { return &m_pixels[index(0, y)]; }

    /// Sets the hue of luminances that are painted from now on.
    void setBrush(const Colour& hue) { m_brush = hue; }

    /// Sets every pixel to shade(x, y).
    template <class Shade>
    void cover(Shade shade)
    {
        for (int row = 0; row < height(); ++row)
            for (int column = 0; column < width(); ++column)
                blend(column, row, colourOf(shade(unitX(column), unitY(row))), 1);
    }

    /// Multiplies the light of every pixel in \p box by factor(x, y).
    template <class Factor>
    void dim(const Box& box, Factor factor)
    {
        const auto range = pixelRange(box);
        for (int row = range.y; row < range.y + range.height; ++row)
            for (int column = range.x; column < range.x + range.width; ++column)
                scale(column, row, factor(unitX(column), unitY(row)));
    }

    /// Paints shade(x, y) where distance(x, y) is negative, within \p box.
    template <class Distance, class Shade>
    void paint(const Box& box, Distance distance, Shade shade)
    {
        const auto range = pixelRange(box);
        for (int row = range.y; row < range.y + range.height; ++row) {
            for (int column = range.x; column < range.x + range.width; ++column) {
                const float x = unitX(column), y = unitY(row);
                const float cover = std::clamp(0.5F - distance(x, y) * m_scale, 0.0F, 1.0F);
                if (cover > 0)
                    blend(column, row, colourOf(shade(x, y)), cover);
            }
        }
    }

    /// Mixes in the light of \p other with the weight \p share.
    void average(const Canvas& other, float share);

    void fillCircle(Point center, float radius, float shade);
    void fillBox(const Box& box, float shade, float cornerRadius = 0);
    void fillStroke(Point from, Point to, float thickness, float shade);
    /// A convex polygon, its corners in clockwise order as seen on the screen.
    void fillPolygon(const std::vector<Point>& corners, float shade);
    /// Block letters (A-Z, 0-9, blank, - . /) of this height, from their upper left corner.
    void write(std::string_view text, Point corner, float letterHeight, float shade);

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width()) + static_cast<std::size_t>(x);
    }
    float unitX(int column) const { return (static_cast<float>(column + m_window.x) + 0.5F) / m_scale; }
    float unitY(int row) const { return (static_cast<float>(row + m_window.y) + 0.5F) / m_scale; }
    /// The pixels of the window that a box covers.
    Window pixelRange(const Box& box) const;
    Colour colourOf(float luminance) const { return tinted(luminance, m_brush); }
    static Colour colourOf(const Colour& colour) { return colour; }
    void blend(int x, int y, const Colour& colour, float cover);
    void scale(int x, int y, float factor);

    int m_wholeWidth;
    int m_wholeHeight;
    Window m_window;
    float m_scale; ///< pixels per unit
    Colour m_brush = WHITE;
    std::vector<Light> m_pixels;
};

} // namespace simulation
