// SPDX-License-Identifier: MIT
#include "pictures/Processing.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace simulation {

namespace {

constexpr double SAMPLE_RANGE = 65536;

std::uint16_t luminance(const std::uint16_t* rgb)
{
    return static_cast<std::uint16_t>((77U * rgb[0] + 150U * rgb[1] + 29U * rgb[2]) >> 8U);
}

// The colour (red, green or blue) of the mosaic at a position in a field of 2 x 2.
std::size_t colourAt(int redAt, int place)
{
    if (place == redAt)
        return 0;
    return place == 3 - redAt ? 2 : 1;
}

} // namespace

std::string Processing::key() const
{
    std::ostringstream text;
    text.precision(17);
    text << format->number << ' ' << width << 'x' << height << ' ' << gain << ' ' << offset << ' ' << gamma
         << ' ' << flipX << flipY;
    if (origin)
        text << ' ' << origin->x << ',' << origin->y;
    return text.str();
}

ToneCurve::ToneCurve(const Processing& processing) : m_codes(static_cast<std::size_t>(SAMPLE_RANGE))
{
    const double codes = std::ldexp(1.0, processing.format->depth);
    const double offset = processing.offset * codes / 256;
    for (std::size_t sample = 0; sample < m_codes.size(); ++sample) {
        double value = static_cast<double>(sample) / SAMPLE_RANGE * processing.gain;
        if (processing.gamma != 1)
            value = std::pow(std::min(value, 1.0), 1 / processing.gamma);
        m_codes[sample] = static_cast<std::uint16_t>(
            std::clamp(std::floor(std::min(value, 1.0) * codes + offset), 0.0, codes - 1));
    }
}

std::size_t samplesOf(const PixelFormat& format, const ToneCurve& curve, const std::uint16_t* rgb,
                      int mosaicPlace, std::uint16_t* samples)
{
    switch (format.components) {
    case Components::Grey:
        samples[0] = curve[luminance(rgb)];
        return 1;
    case Components::Mosaic:
        samples[0] = curve[rgb[colourAt(format.redAt, mosaicPlace)]];
        return 1;
    case Components::RedGreenBlue:
        for (std::size_t i = 0; i < 3; ++i)
            samples[i] = curve[rgb[i]];
        return 3;
    default:
        for (std::size_t i = 0; i < 3; ++i)
            samples[i] = curve[rgb[2 - i]];
        samples[3] = 255;
        return format.samples();
    }
}

void render(const Film& film, std::size_t picture, const Processing& processing, const ToneCurve& curve,
            std::span<std::uint8_t> target)
{
    const auto& format = *processing.format;
    Window window{0, 0, film.width(), film.height()};
    if (processing.origin)
        window = {processing.origin->x, processing.origin->y, processing.width, processing.height};
    std::vector<std::uint16_t> source(static_cast<std::size_t>(film.width()) * 3);
    std::vector<std::uint16_t> line(static_cast<std::size_t>(window.width) * format.samples() + 3);
    PixelStream stream(format, processing.width, target);
    for (int y = 0; y < window.height; ++y) {
        const int sourceY = window.y + (processing.flipY ? window.height - 1 - y : y);
        std::ranges::fill(line, std::uint16_t{0});
        if (sourceY < film.height()) {
            film.readLine(picture, sourceY, source);
            auto* pixel = line.data();
            for (int x = 0; x < window.width; ++x) {
                const int sourceX = window.x + (processing.flipX ? window.width - 1 - x : x);
                if (sourceX < film.width())
                    samplesOf(format, curve, &source[static_cast<std::size_t>(sourceX) * 3],
                              2 * (y % 2) + x % 2, pixel);
                pixel += format.samples();
            }
        }
        stream.append(std::span(line).first(static_cast<std::size_t>(window.width) * format.samples()));
    }
    stream.finish();
}

} // namespace simulation
