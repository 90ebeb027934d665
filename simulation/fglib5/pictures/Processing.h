// SPDX-License-Identifier: MIT
/// \file
/// Processing: an applet's processing of a film on its way to memory.
#pragma once

#include "pictures/Film.h"
#include "pictures/PixelFormat.h"

#include <optional>
#include <string>

namespace simulation {

/// A position in an image, in pixels.
struct PixelPosition
{
    int x, y;
};

struct Processing
{
    const PixelFormat* format = nullptr;
    int width = 0; ///< pixels per line
    int height = 0;
    /// Upper left corner of the applet's region of interest in the source's images. None: the applet takes
    /// the source's pixels as one stream.
    std::optional<PixelPosition> origin;
    double gain = 1;
    double offset = 0; ///< digits of 8 bits
    double gamma = 1;
    bool flipX = false;
    bool flipY = false;

    std::size_t bytes() const { return format->bytes(width, height); }
    /// Equal for objects with the same effect.
    std::string key() const;
};

/// Maps the film's samples to values of a format.
class ToneCurve
{
public:
    explicit ToneCurve(const Processing& processing);

    std::uint16_t operator[](std::uint16_t sample) const { return m_codes[sample]; }

private:
    std::vector<std::uint16_t> m_codes;
};

/// Computes the samples of one pixel of \p format from red, green, blue; returns their number. \p mosaicPlace
/// is a position as in PixelFormat::redAt.
std::size_t samplesOf(const PixelFormat& format, const ToneCurve& curve, const std::uint16_t* rgb,
                      int mosaicPlace, std::uint16_t* samples);

/// Writes one picture of a film. Pixels outside the film are black.
void render(const Film& film, std::size_t picture, const Processing& processing, const ToneCurve& curve,
            std::span<std::uint8_t> target);

} // namespace simulation
