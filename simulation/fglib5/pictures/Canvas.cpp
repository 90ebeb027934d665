#include "pictures/Canvas.h"

#include "pictures/BlockLetters.h"

#include <array>
#include <limits>

namespace simulation {

namespace {

// The noise's lattice, repeated every 256 units: looking a value up is several times as fast as computing it.
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

// A very wide picture (a line camera's) shows a strip three heights wide, not one line magnified.
Canvas::Canvas(int width, int height)
    : m_width(width),
      m_height(height),
      m_scale(std::max(static_cast<float>(height), static_cast<float>(width) / 3)),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
{}

std::pair<int, int> Canvas::pixelRange(float from, float to, int end) const
{
    const auto limit = static_cast<float>(end);
    return {static_cast<int>(std::clamp(std::floor(from * m_scale) - 1, 0.0F, limit)),
            static_cast<int>(std::clamp(std::ceil(to * m_scale) + 1, 0.0F, limit))};
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

std::vector<std::uint8_t> Canvas::exposed(int image) const
{
    // One table of noise for all images, entered at another place for each line and image.
    static const auto NOISE_TABLE = [] {
        std::array<float, 8192> values{};
        for (int i = 0; i < static_cast<int>(values.size()); ++i)
            values[static_cast<std::size_t>(i)] =
                (scatter(i, 1) + scatter(i, 2) + scatter(i, 3) - 1.5F) * 5.0F + 0.5F;
        return values;
    }();
    std::vector<std::uint8_t> bytes(m_pixels.size());
    for (int row = 0; row < m_height; ++row) {
        auto place = static_cast<std::size_t>(scatter(row, 1000 + image) * 8192.0F);
        for (int column = 0; column < m_width; ++column) {
            const auto i = index(column, row);
            const float value = m_pixels[i] * 255.0F + NOISE_TABLE[place++ % NOISE_TABLE.size()];
            bytes[i] = static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F));
        }
    }
    return bytes;
}

} // namespace simulation
