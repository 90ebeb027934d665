// SPDX-License-Identifier: MIT
#include "ovra-lib-display/PixelFormat.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace ovra::display {

namespace {

constexpr int NO_BAYER = -1;

constexpr std::array<PixelFormatDescription, 18> FORMATS = {{
    {PixelFormat::Mono8, "Mono8", 8, 8, 1, NO_BAYER},
    {PixelFormat::Mono10, "Mono10", 16, 10, 1, NO_BAYER},
    {PixelFormat::Mono12, "Mono12", 16, 12, 1, NO_BAYER},
    {PixelFormat::Mono14, "Mono14", 16, 14, 1, NO_BAYER},
    {PixelFormat::Mono16, "Mono16", 16, 16, 1, NO_BAYER},
    {PixelFormat::Mono10Packed, "Mono10Packed", 10, 10, 1, NO_BAYER},
    {PixelFormat::Mono12Packed, "Mono12Packed", 12, 12, 1, NO_BAYER},
    {PixelFormat::Rgb8, "Rgb8", 24, 8, 3, NO_BAYER},
    {PixelFormat::Bgr8, "Bgr8", 24, 8, 3, NO_BAYER},
    {PixelFormat::Bgra8, "Bgra8", 32, 8, 4, NO_BAYER},
    {PixelFormat::BayerRg8, "BayerRg8", 8, 8, 1, 0},
    {PixelFormat::BayerGr8, "BayerGr8", 8, 8, 1, 1},
    {PixelFormat::BayerGb8, "BayerGb8", 8, 8, 1, 2},
    {PixelFormat::BayerBg8, "BayerBg8", 8, 8, 1, 3},
    {PixelFormat::BayerRg12, "BayerRg12", 16, 12, 1, 0},
    {PixelFormat::BayerGr12, "BayerGr12", 16, 12, 1, 1},
    {PixelFormat::BayerGb12, "BayerGb12", 16, 12, 1, 2},
    {PixelFormat::BayerBg12, "BayerBg12", 16, 12, 1, 3},
}};

} // namespace

const PixelFormatDescription& describe(PixelFormat format)
{
    const auto* const found = std::ranges::find(FORMATS, format, &PixelFormatDescription::format);
    if (found == FORMATS.end())
        throw std::invalid_argument("There is no pixel format " + std::to_string(static_cast<int>(format)));
    return *found;
}

std::optional<PixelFormat> pixelFormatOf(int number)
{
    const auto format = static_cast<PixelFormat>(number);
    if (std::ranges::find(FORMATS, format, &PixelFormatDescription::format) == FORMATS.end())
        return std::nullopt;
    return format;
}

std::size_t bytesPerLine(PixelFormat format, int width)
{
    return (static_cast<std::size_t>(describe(format).bitsPerPixel) * static_cast<std::size_t>(width) + 7) /
           8;
}

} // namespace ovra::display
