#include "pictures/Patterns.h"

#include <cstddef>

namespace simulation {

namespace {

std::uint8_t greyOf(Pattern pattern, int x, int y, int image, int count)
{
    if (pattern == Pattern::Ramp)
        return static_cast<std::uint8_t>(x + y + 256 * image / count);
    const int shifted = x + 64 * image / count; // two fields to the left is where the pattern repeats
    return (shifted / 32 + y / 32) % 2 == 0 ? 24 : 224;
}

} // namespace

Pattern patternNamed(std::string_view name)
{
    return name == "ramp" ? Pattern::Ramp : Pattern::Checkerboard;
}

std::vector<std::uint8_t> drawPattern(Pattern pattern, int width, int height, int image, int count)
{
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    auto* pixel = pixels.data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            *pixel++ = greyOf(pattern, x, y, image, count);
    return pixels;
}

} // namespace simulation
