// SPDX-License-Identifier: MIT
#include "ovra-lib-display/PixelConversion.h"

#include <array>
#include <cstring>
#include <utility>

namespace ovra::display {

namespace {

using Samples = std::vector<std::uint16_t>;

std::size_t pixelsOf(const Image& image)
{
    return static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
}

/// Calls line(bytes of the line, first sample of the line) for each line.
template <class Line>
void forEachLine(const Image& image, std::uint16_t* samples, int samplesPerPixel, Line line)
{
    const auto step = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(samplesPerPixel);
    for (int y = 0; y < image.height; ++y)
        line(image.pixels + static_cast<std::size_t>(y) * image.bytesPerLine,
             samples + static_cast<std::size_t>(y) * step);
}

// Reads up to 16 bits that start at any bit, low bits first.
std::uint16_t bitsAt(const std::uint8_t* bytes, std::size_t bit, unsigned int count)
{
    std::uint32_t value = 0;
    const auto first = bit / 8, shift = bit % 8;
    for (std::size_t i = 0; i * 8 < shift + count; ++i)
        value |= static_cast<std::uint32_t>(bytes[first + i]) << (8 * i);
    return static_cast<std::uint16_t>((value >> shift) & ((1U << count) - 1));
}

// For formats with one component.
void unpackSamples(const Image& image, Samples& samples)
{
    const auto& format = describe(image.format);
    const auto width = static_cast<std::size_t>(image.width);
    samples.resize(pixelsOf(image));
    forEachLine(image, samples.data(), 1, [&](const std::uint8_t* bytes, std::uint16_t* target) {
        if (format.bitsPerPixel == 16) // little-endian, like the machines that the runtime runs on
            return static_cast<void>(std::memcpy(target, bytes, width * 2));
        for (std::size_t x = 0; x < width; ++x)
            target[x] = format.bitsPerPixel == 8
                            ? bytes[x]
                            : bitsAt(bytes, x * static_cast<std::size_t>(format.bitsPerPixel),
                                     static_cast<unsigned int>(format.bitsPerPixel));
    });
}

void unpackColours(const Image& image, Samples& samples)
{
    const auto step = static_cast<std::size_t>(describe(image.format).components);
    const bool redFirst = image.format == PixelFormat::Rgb8;
    samples.resize(pixelsOf(image) * 3);
    forEachLine(image, samples.data(), 3, [&](const std::uint8_t* bytes, std::uint16_t* target) {
        for (int x = 0; x < image.width; ++x, bytes += step, target += 3) {
            target[0] = bytes[redFirst ? 0 : 2];
            target[1] = bytes[1];
            target[2] = bytes[redFirst ? 2 : 0];
        }
    });
}

/// The colour of each pixel of a Bayer image: 0 red, 1 green, 2 blue.
class Mosaic
{
public:
    explicit Mosaic(int redAt) : m_redX(redAt % 2), m_redY(redAt / 2) {}

    std::size_t colourOf(int x, int y) const
    {
        const bool redColumn = x % 2 == m_redX, redLine = y % 2 == m_redY;
        if (redColumn != redLine)
            return 1;
        return redLine ? 0 : 2;
    }

private:
    int m_redX, m_redY;
};

// Each colour is the mean of the pixels of that colour among a pixel and its eight neighbours.
void interpolate(const Image& image, const Samples& raw, Samples& samples)
{
    const Mosaic mosaic(describe(image.format).redAt);
    samples.resize(raw.size() * 3);
    auto* target = samples.data();
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x, target += 3) {
            std::array<unsigned int, 3> sum{}, count{};
            for (int v = std::max(y - 1, 0); v <= std::min(y + 1, image.height - 1); ++v) {
                for (int u = std::max(x - 1, 0); u <= std::min(x + 1, image.width - 1); ++u) {
                    const auto colour = mosaic.colourOf(u, v);
                    sum[colour] += raw[static_cast<std::size_t>(v) * static_cast<std::size_t>(image.width) +
                                       static_cast<std::size_t>(u)];
                    ++count[colour];
                }
            }
            const auto own = mosaic.colourOf(x, y);
            sum[own] = raw[static_cast<std::size_t>(target - samples.data()) / 3];
            count[own] = 1;
            for (std::size_t i = 0; i < 3; ++i)
                target[i] = static_cast<std::uint16_t>(count[i] == 0 ? 0 : sum[i] / count[i]);
        }
    }
}

} // namespace

void unpackGrey(const Image& image, Samples& samples)
{
    if (describe(image.format).components == 1)
        return unpackSamples(image, samples);
    Samples colours;
    unpackColours(image, colours);
    samples.resize(pixelsOf(image));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint16_t>(
            (299U * colours[3 * i] + 587U * colours[3 * i + 1] + 114U * colours[3 * i + 2] + 500U) / 1000U);
}

void unpackRgb(const Image& image, Samples& samples)
{
    const auto& format = describe(image.format);
    if (format.components > 1)
        return unpackColours(image, samples);
    Samples raw;
    unpackSamples(image, raw);
    if (format.redAt >= 0)
        return interpolate(image, raw, samples);
    samples.resize(raw.size() * 3);
    for (std::size_t i = 0; i < raw.size(); ++i)
        samples[3 * i] = samples[3 * i + 1] = samples[3 * i + 2] = raw[i];
}

void unpackRgb8(const Image& image, std::vector<std::uint8_t>& samples)
{
    Samples deep;
    unpackRgb(image, deep);
    const int excess = describe(image.format).significantBits - 8;
    samples.resize(deep.size());
    for (std::size_t i = 0; i < deep.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(deep[i] >> excess);
}

} // namespace ovra::display
