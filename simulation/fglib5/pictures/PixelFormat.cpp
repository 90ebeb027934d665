// SPDX-License-Identifier: MIT
#include "pictures/PixelFormat.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace simulation {

namespace {

constexpr std::array<PixelFormat, 18> FORMATS = {{
    {FG_PIXELFORMAT_MONO8, "Mono8", 8, 8, Components::Grey},
    {FG_PIXELFORMAT_MONO10, "Mono10", 16, 10, Components::Grey},
    {FG_PIXELFORMAT_MONO12, "Mono12", 16, 12, Components::Grey},
    {FG_PIXELFORMAT_MONO14, "Mono14", 16, 14, Components::Grey},
    {FG_PIXELFORMAT_MONO16, "Mono16", 16, 16, Components::Grey},
    {FG_PIXELFORMAT_MONO10_PACKED, "Mono10Packed", 10, 10, Components::Grey},
    {FG_PIXELFORMAT_MONO12_PACKED, "Mono12Packed", 12, 12, Components::Grey},
    {FG_PIXELFORMAT_RGB8, "Rgb8", 24, 8, Components::RedGreenBlue},
    {FG_PIXELFORMAT_BGR8, "Bgr8", 24, 8, Components::BlueGreenRed},
    {FG_PIXELFORMAT_BGRA8, "Bgra8", 32, 8, Components::BlueGreenRedFull},
    {FG_PIXELFORMAT_BAYER_RG8, "BayerRg8", 8, 8, Components::Mosaic, 0},
    {FG_PIXELFORMAT_BAYER_GR8, "BayerGr8", 8, 8, Components::Mosaic, 1},
    {FG_PIXELFORMAT_BAYER_GB8, "BayerGb8", 8, 8, Components::Mosaic, 2},
    {FG_PIXELFORMAT_BAYER_BG8, "BayerBg8", 8, 8, Components::Mosaic, 3},
    {FG_PIXELFORMAT_BAYER_RG12, "BayerRg12", 16, 12, Components::Mosaic, 0},
    {FG_PIXELFORMAT_BAYER_GR12, "BayerGr12", 16, 12, Components::Mosaic, 1},
    {FG_PIXELFORMAT_BAYER_GB12, "BayerGb12", 16, 12, Components::Mosaic, 2},
    {FG_PIXELFORMAT_BAYER_BG12, "BayerBg12", 16, 12, Components::Mosaic, 3},
}};

bool inBytes(const PixelFormat& format)
{
    return format.depth == 8;
}

bool inWords(const PixelFormat& format)
{
    return format.bitsPerPixel == 16;
}

// Replaces \p count bits from \p bit on.
void putBits(std::uint8_t* bytes, std::size_t bit, unsigned int count, std::uint32_t value)
{
    for (unsigned int done = 0; done < count;) {
        const auto place = bit + done;
        const auto shift = static_cast<unsigned int>(place % 8);
        const auto here = std::min(8 - shift, count - done);
        const auto mask = ((1U << here) - 1) << shift;
        auto& byte = bytes[place / 8];
        byte = static_cast<std::uint8_t>((byte & ~mask) | (((value >> done) << shift) & mask));
        done += here;
    }
}

void packBits(const std::uint16_t* samples, std::size_t count, unsigned int bits, std::uint8_t* target)
{
    std::uint32_t held = 0;
    unsigned int heldBits = 0;
    for (std::size_t i = 0; i < count; ++i) {
        held |= static_cast<std::uint32_t>(samples[i]) << heldBits;
        for (heldBits += bits; heldBits >= 8; heldBits -= 8, held >>= 8U)
            *target++ = static_cast<std::uint8_t>(held);
    }
    if (heldBits > 0)
        *target = static_cast<std::uint8_t>(held);
}

} // namespace

std::size_t PixelFormat::samples() const
{
    if (components == Components::BlueGreenRedFull)
        return 4;
    return components == Components::Grey || components == Components::Mosaic ? 1 : 3;
}

std::size_t PixelFormat::bytesPerLine(int width) const
{
    return (static_cast<std::size_t>(bitsPerPixel) * static_cast<std::size_t>(width) + 7) / 8;
}

std::span<const PixelFormat> pixelFormats()
{
    return FORMATS;
}

const PixelFormat* pixelFormat(int number)
{
    const auto* const found = std::ranges::find(FORMATS, number, &PixelFormat::number);
    return found == FORMATS.end() ? nullptr : found;
}

const PixelFormat* pixelFormat(std::string_view name)
{
    const auto* const found = std::ranges::find(FORMATS, name, &PixelFormat::name);
    return found == FORMATS.end() ? nullptr : found;
}

PixelStream::PixelStream(const PixelFormat& format, int width, std::span<std::uint8_t> target)
    : m_format(format),
      m_lineSamples(format.samples() * static_cast<std::size_t>(width)),
      m_lineBytes(format.bytesPerLine(width)),
      m_rest(target)
{
    m_line.reserve(m_lineSamples);
}

void PixelStream::append(std::span<const std::uint16_t> samples)
{
    while (!samples.empty() && !m_rest.empty()) {
        const auto taken = samples.first(std::min(samples.size(), m_lineSamples - m_line.size()));
        m_line.insert(m_line.end(), taken.begin(), taken.end());
        samples = samples.subspan(taken.size());
        if (m_line.size() == m_lineSamples)
            packLine();
    }
}

void PixelStream::packLine()
{
    const auto target = m_rest.first(m_lineBytes);
    if (inBytes(m_format))
        std::ranges::transform(m_line, target.begin(),
                               [](std::uint16_t sample) { return static_cast<std::uint8_t>(sample); });
    else if (inWords(m_format)) // little-endian, like the machines that the runtime runs on
        std::memcpy(target.data(), m_line.data(), m_lineBytes);
    else
        packBits(m_line.data(), m_line.size(), static_cast<unsigned int>(m_format.depth), target.data());
    m_line.clear();
    m_rest = m_rest.subspan(m_lineBytes);
}

void PixelStream::finish()
{
    if (!m_line.empty()) {
        m_line.resize(m_lineSamples, 0);
        packLine();
    }
    std::ranges::fill(m_rest, std::uint8_t{0});
    m_rest = {};
}

void PixelStream::fill(const PixelFormat& format, int width, std::span<std::uint8_t> target,
                       std::size_t first, std::size_t count, std::span<const std::uint16_t> samples)
{
    const auto columns = static_cast<std::size_t>(width), lineBytes = format.bytesPerLine(width);
    while (count > 0 && first / columns * lineBytes < target.size()) {
        auto* line = target.data() + first / columns * lineBytes;
        const auto x = first % columns, here = std::min(count, columns - x);
        if (format.bitsPerPixel == 8)
            std::memset(line + x, samples[0], here);
        else if (inBytes(format))
            for (std::size_t i = x * samples.size(); i < (x + here) * samples.size(); ++i)
                line[i] = static_cast<std::uint8_t>(samples[i % samples.size()]);
        else if (inWords(format))
            for (std::size_t i = x; i < x + here; ++i)
                std::memcpy(line + 2 * i, samples.data(), 2);
        else
            for (std::size_t i = x; i < x + here; ++i)
                putBits(line, i * static_cast<std::size_t>(format.depth),
                        static_cast<unsigned int>(format.depth), samples[0]);
        first += here;
        count -= here;
    }
}

} // namespace simulation
