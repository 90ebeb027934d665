/// \file
/// What an applet makes of a film on its way to memory.
#pragma once

#include "pictures/Film.h"
#include "pictures/PixelFormat.h"

#include <optional>
#include <string>

namespace simulation {

/// A place in an image, in pixels.
struct Origin
{
    int x, y;
};

struct Processing
{
    const PixelFormat* format;
    int width; ///< pixels a line
    int height;
    /// Where in the source's images the applet's region of interest begins, in pixels. None: it takes the
    /// source's pixels as they come, as one stream.
    std::optional<Origin> origin;
    double gain = 1;
    double offset = 0; ///< digits of 8 bits
    double gamma = 1;
    bool flipX = false;
    bool flipY = false;

    std::size_t bytes() const { return format->bytes(width, height); }
    /// Equal for those that do the same.
    std::string key() const;
};

/// Which value of a format each sample becomes.
class ToneCurve
{
public:
    explicit ToneCurve(const Processing& processing);

    std::uint16_t operator[](std::uint16_t sample) const { return m_codes[sample]; }

private:
    std::vector<std::uint16_t> m_codes;
};

/// Gives the samples of one pixel of \p format for red, green, blue; returns how many. \p mosaicPlace as
/// PixelFormat::redAt.
std::size_t samplesOf(const PixelFormat& format, const ToneCurve& curve, const std::uint16_t* rgb,
                      int mosaicPlace, std::uint16_t* samples);

/// Writes one picture of a film. What the film does not fill is black.
void render(const Film& film, std::size_t picture, const Processing& processing, const ToneCurve& curve,
            std::span<std::uint8_t> target);

} // namespace simulation
