// SPDX-License-Identifier: MIT
/// \file
/// PixelFormat: the formats that a DMA channel writes. PixelStream: packs samples into bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace simulation {

enum class Components
{
    Grey,
    RedGreenBlue,
    BlueGreenRed,
    BlueGreenRedFull, ///< and 255
    Mosaic            ///< one colour per pixel
};

struct PixelFormat
{
    int number = 0; ///< FG_PIXELFORMAT_...
    const char* name = nullptr;
    int bitsPerPixel = 0; ///< in memory
    int depth = 0;        ///< significant bits of a sample
    Components components = {};
    int redAt = 0; ///< Mosaic: position of the red pixel in a field of 2 x 2, line by line

    std::size_t samples() const; ///< per pixel
    std::size_t bytesPerLine(int width) const;
    std::size_t bytes(int width, int height) const
    {
        return bytesPerLine(width) * static_cast<std::size_t>(height);
    }
};

std::span<const PixelFormat> pixelFormats();
/// Null if there is none.
const PixelFormat* pixelFormat(int number);
const PixelFormat* pixelFormat(std::string_view name);

/// Takes the pixels of a source as one stream and cuts it into lines of its own width: a source of another
/// width shows as a slanted picture.
class PixelStream
{
public:
    PixelStream(const PixelFormat& format, int width, std::span<std::uint8_t> target);

    /// Appends pixels of format.samples() samples each. Drops those that do not fit.
    void append(std::span<const std::uint16_t> samples);
    /// Fills the rest with black.
    void finish();

    /// Overwrites \p count pixels of the stream from \p first on with the same samples.
    static void fill(const PixelFormat& format, int width, std::span<std::uint8_t> target, std::size_t first,
                     std::size_t count, std::span<const std::uint16_t> samples);

private:
    void packLine();

    const PixelFormat& m_format;
    const std::size_t m_lineSamples;
    const std::size_t m_lineBytes;
    std::span<std::uint8_t> m_rest; ///< the target from the current line on
    std::vector<std::uint16_t> m_line;
};

} // namespace simulation
