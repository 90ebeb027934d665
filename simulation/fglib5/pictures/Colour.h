// SPDX-License-Identifier: MIT
/// \file
/// Colour: a colour while a picture is painted. Light: a pixel of the finished picture.
#pragma once

#include <algorithm>
#include <cstdint>

namespace simulation {

/// Values run from 0 (black) to 1 (white). Higher values saturate a sensor at its normal exposure.
struct Colour
{
    float red, green, blue;
};

inline constexpr Colour WHITE{1, 1, 1};

/// Scales a colour to luminance 1.
constexpr Colour hue(float red, float green, float blue)
{
    const float luminance = 0.299F * red + 0.587F * green + 0.114F * blue;
    return {red / luminance, green / luminance, blue / luminance};
}

inline Colour mix(const Colour& a, const Colour& b, float t)
{
    return {a.red + (b.red - a.red) * t, a.green + (b.green - a.green) * t, a.blue + (b.blue - a.blue) * t};
}

/// A colour of this luminance and hue. The hue fades at high luminance, as in a lamp's reflection.
inline Colour tinted(float luminance, const Colour& hue)
{
    const float t = std::clamp((luminance - 0.6F) / 0.4F, 0.0F, 1.0F);
    const auto faded = mix(hue, WHITE, t * t * (3 - 2 * t));
    return {luminance * faded.red, luminance * faded.green, luminance * faded.blue};
}

/// One pixel of a drawn picture. WHITE is FULL_LIGHT; values go up to twice that.
struct Light
{
    static constexpr std::uint16_t FULL_LIGHT = 32768;

    std::uint16_t red, green, blue;
};

inline std::uint16_t lightOf(float value)
{
    return static_cast<std::uint16_t>(std::clamp(value * Light::FULL_LIGHT + 0.5F, 0.0F, 65535.0F));
}

} // namespace simulation
