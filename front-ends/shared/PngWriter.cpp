// SPDX-License-Identifier: MIT
#include "PngWriter.h"

#include "ovra-lib-display/PixelConversion.h"

#include <boost/crc.hpp>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace ovra::frontend {

namespace {

constexpr int BITS_PER_BYTE = 8;

void append(void* file, void* bytes, int count)
{
    static_cast<std::string*>(file)->append(static_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

/// Encodes 8-bit samples as a PNG file.
std::string encodeBytes(std::span<const std::uint8_t> bytes, int width, int height, int components)
{
    // The difference to the line above does not depend on the number of bytes per pixel.
    constexpr int FILTER_UP = 2;
    [[maybe_unused]] static const int ONLY_FILTER = stbi_write_force_png_filter = FILTER_UP;
    std::string file;
    if (stbi_write_png_to_func(append, &file, width, height, components, bytes.data(), width * components) ==
        0)
        throw std::runtime_error("no PNG file of an image of " + std::to_string(width) + " x " +
                                 std::to_string(height) + " pixels");
    return file;
}

void putNumber(std::string& file, std::size_t place, std::uint32_t number)
{
    for (int shift = 24; shift >= 0; shift -= BITS_PER_BYTE)
        file[place++] = static_cast<char>(number >> shift & 0xff);
}

// The library writes 8-bit samples only. A line of 16-bit samples has the same bytes; only the header
// differs.
void declareSixteenBits(std::string& file, int width, int components)
{
    constexpr std::size_t HEADER_NAME = 12, WIDTH = 16, DEPTH = 24, COLOUR_TYPE = 25, HEADER_CRC = 29;
    constexpr char GREY = 0, RGB = 2;
    putNumber(file, WIDTH, static_cast<std::uint32_t>(width));
    file[DEPTH] = 16;
    file[COLOUR_TYPE] = components == 1 ? GREY : RGB;
    boost::crc_32_type crc;
    crc.process_bytes(file.data() + HEADER_NAME, HEADER_CRC - HEADER_NAME);
    putNumber(file, HEADER_CRC, crc.checksum());
}

/// The samples scaled to 16 bits, big-endian.
std::vector<std::uint8_t> bigEndian(std::span<const std::uint16_t> samples, int bits)
{
    const int shift = 2 * BITS_PER_BYTE - bits;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(2 * samples.size());
    for (const unsigned sample : samples) {
        const unsigned full = sample << shift | sample >> (bits - shift);
        bytes.push_back(static_cast<std::uint8_t>(full >> BITS_PER_BYTE));
        bytes.push_back(static_cast<std::uint8_t>(full & 0xff));
    }
    return bytes;
}

} // namespace

std::string encodePng(const display::Image& image)
{
    const auto& format = display::describe(image.format);
    const int components = format.components == 1 && format.redAt < 0 ? 1 : 3;
    PngSamples samples{image.width, image.height, components, format.significantBits, {}, {}};
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint16_t> words;
    if (components == 1)
        display::unpackGrey(image, words);
    else if (format.significantBits == BITS_PER_BYTE)
        display::unpackRgb8(image, bytes);
    else
        display::unpackRgb(image, words);
    if (components == 1 && format.significantBits == BITS_PER_BYTE)
        bytes.assign(words.begin(), words.end());
    samples.bytes = bytes;
    samples.words = words;
    return encodePng(samples);
}

std::string encodePng(const PngSamples& samples)
{
    if (samples.bits == BITS_PER_BYTE)
        return encodeBytes(samples.bytes, samples.width, samples.height, samples.components);

    // Declared to the library as 8-bit pixels: a grey sample as one pixel of two components, an RGB pixel as
    // two of three.
    const int pixels = samples.components == 1 ? samples.width : 2 * samples.width;
    std::string file = encodeBytes(bigEndian(samples.words, samples.bits), pixels, samples.height,
                                   samples.components == 1 ? 2 : 3);
    declareSixteenBits(file, samples.width, samples.components);
    return file;
}

} // namespace ovra::frontend
