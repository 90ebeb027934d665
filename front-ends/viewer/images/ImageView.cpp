// SPDX-License-Identifier: MIT
#include "images/ImageView.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ovra::viewer {

namespace {

struct Span
{
    int begin = 0;
    int length = 0;
};

Span clipped(int begin, int length, int limit)
{
    const std::int64_t end = std::clamp<std::int64_t>(std::int64_t{begin} + std::max(length, 0), 0, limit);
    const int from = std::clamp(begin, 0, limit);
    return {from, std::max(static_cast<int>(end) - from, 0)};
}

/// Extends to whole squares, so that the picture does not shimmer when the region moves.
Span widened(const Span& span, int binning, int limit)
{
    const int begin = span.begin / binning * binning;
    const int end = (span.begin + span.length + binning - 1) / binning * binning;
    return {begin, std::min(end, limit) - begin};
}

int squares(int length, int binning)
{
    return (length + binning - 1) / binning;
}

/// Adds up the lines of a row of squares, then the columns of each square.
template <class Sample>
class Binning
{
public:
    Binning(const Frame& frame, const ImageView& view)
        : m_frame(frame),
          m_view(view),
          m_components(static_cast<std::size_t>(frame.layout.components)),
          m_sums(static_cast<std::size_t>(view.region.width) * m_components)
    {}

    void write(std::uint8_t* target)
    {
        const auto rowBytes = static_cast<std::size_t>(m_view.width) * m_components * sizeof(Sample);
        for (int row = 0; row < m_view.height; ++row, target += rowBytes) {
            const int first = row * m_view.binning;
            const int lines = std::min(m_view.binning, m_view.region.height - first);
            addLines(first, lines);
            writeMeans(lines, target);
        }
    }

private:
    const std::uint8_t* line(int index) const
    {
        const auto y = static_cast<std::size_t>(m_view.region.y + index);
        const auto pixel =
            y * static_cast<std::size_t>(m_frame.width) + static_cast<std::size_t>(m_view.region.x);
        return m_frame.pixels() + pixel * m_components * sizeof(Sample);
    }

    void addLines(int first, int lines)
    {
        std::fill(m_sums.begin(), m_sums.end(), 0U);
        const std::size_t count = m_sums.size();
        for (int i = 0; i < lines; ++i) {
            const std::uint8_t* const source = line(first + i);
            std::uint32_t* const sums = m_sums.data();
            for (std::size_t sample = 0; sample < count; ++sample) {
                Sample value{};
                std::memcpy(&value, source + sample * sizeof(Sample), sizeof(Sample));
                sums[sample] += value;
            }
        }
    }

    void writeMeans(int lines, std::uint8_t* target) const
    {
        const auto binning = static_cast<std::size_t>(m_view.binning);
        const std::size_t pixels = m_sums.size() / m_components;
        // A product with the reciprocal is exact here: a sum has at most 32 bits and a double holds 53.
        const double whole = 1.0 / static_cast<double>(binning * static_cast<std::size_t>(lines));
        for (std::size_t begin = 0; begin < pixels; begin += binning) {
            const std::size_t columns = std::min(binning, pixels - begin);
            const double share = columns == binning
                                     ? whole
                                     : 1.0 / static_cast<double>(columns * static_cast<std::size_t>(lines));
            for (std::size_t component = 0; component < m_components; ++component, target += sizeof(Sample)) {
                std::uint64_t sum = 0;
                for (std::size_t column = 0; column < columns; ++column)
                    sum += m_sums[(begin + column) * m_components + component];
                const auto mean = static_cast<Sample>(static_cast<double>(sum) * share + 0.5);
                std::memcpy(target, &mean, sizeof(Sample));
            }
        }
    }

    const Frame& m_frame;
    const ImageView& m_view;
    const std::size_t m_components;
    std::vector<std::uint32_t> m_sums;
};

void copyRows(const Frame& frame, const ImageView& view, std::uint8_t* target)
{
    const auto bytesPerPixel = frame.layout.bytesPerPixel();
    const auto rowBytes = static_cast<std::size_t>(view.width) * bytesPerPixel;
    const auto stride = static_cast<std::size_t>(frame.width) * bytesPerPixel;
    const std::uint8_t* source = frame.pixels() + static_cast<std::size_t>(view.region.y) * stride +
                                 static_cast<std::size_t>(view.region.x) * bytesPerPixel;
    for (int row = 0; row < view.height; ++row, source += stride, target += rowBytes)
        std::memcpy(target, source, rowBytes);
}

} // namespace

ImageView fitView(const Region& wanted, int screenWidth, int screenHeight, int imageWidth, int imageHeight)
{
    const Span columns = clipped(wanted.x, wanted.width, imageWidth);
    const Span rows = clipped(wanted.y, wanted.height, imageHeight);
    if (columns.length == 0 || rows.length == 0 || screenWidth < 1 || screenHeight < 1)
        return {};

    ImageView view;
    view.binning = std::max(1, std::min(columns.length / screenWidth, rows.length / screenHeight));
    const Span x = widened(columns, view.binning, imageWidth);
    const Span y = widened(rows, view.binning, imageHeight);
    view.region = {x.begin, y.begin, x.length, y.length};
    view.width = squares(x.length, view.binning);
    view.height = squares(y.length, view.binning);
    return view;
}

std::size_t sizeInBytes(const ImageView& view, const PixelLayout& layout)
{
    return static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height) *
           layout.bytesPerPixel();
}

void copyView(const Frame& frame, const ImageView& view, std::uint8_t* target)
{
    if (view.binning == 1)
        return copyRows(frame, view, target);
    if (frame.layout.bytesPerSample == 1)
        return Binning<std::uint8_t>(frame, view).write(target);
    Binning<std::uint16_t>(frame, view).write(target);
}

std::vector<unsigned> pixelAt(const Frame& frame, int x, int y)
{
    if (x < 0 || y < 0 || x >= frame.width || y >= frame.height)
        return {};
    const auto pixel =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width) + static_cast<std::size_t>(x);
    const std::uint8_t* source = frame.pixels() + pixel * frame.layout.bytesPerPixel();
    std::vector<unsigned> samples;
    for (int i = 0; i < frame.layout.components; ++i, source += frame.layout.bytesPerSample)
        samples.push_back(frame.layout.bytesPerSample == 1 ? source[0] : source[0] + 256U * source[1]);
    return samples;
}

} // namespace ovra::viewer
