// SPDX-License-Identifier: MIT
#include "images/Histogram.h"

#include <cstring>
#include <vector>

namespace ovra::viewer {

namespace {

using Counts = std::vector<std::uint32_t>;

/// Alternates between two tables, so that equal neighbours, which are frequent, do not stall the pipeline.
template <class Sample>
Counts countSamples(const Frame& frame, std::size_t values)
{
    Counts counts(values * 2);
    std::uint32_t* const even = counts.data();
    std::uint32_t* const odd = even + values;
    const std::size_t samples = frame.sampleCount();
    const std::size_t last = values - 1; // a sample beyond its layout's bits is counted as the highest
    for (std::size_t i = 0; i < samples; ++i) {
        Sample value{};
        std::memcpy(&value, frame.pixels() + i * sizeof(Sample), sizeof(Sample));
        ++(i % 2 == 0 ? even : odd)[value < last ? value : last];
    }
    for (std::size_t i = 0; i < values; ++i)
        even[i] += odd[i];
    counts.resize(values);
    return counts;
}

/// The first value up to which more than \p share of all samples lie.
unsigned percentile(const Counts& counts, double total, double share)
{
    double sum = 0;
    for (std::size_t value = 0; value < counts.size(); ++value) {
        sum += counts[value];
        if (sum > total * share)
            return static_cast<unsigned>(value);
    }
    return static_cast<unsigned>(counts.size() - 1);
}

} // namespace

Histogram measure(const Frame& frame)
{
    constexpr double DARK_SHARE = 0.005;
    const std::size_t values = std::size_t{1} << frame.layout.bits;
    const Counts counts = frame.layout.bytesPerSample == 1 ? countSamples<std::uint8_t>(frame, values)
                                                           : countSamples<std::uint16_t>(frame, values);
    Histogram histogram;
    histogram.image = frame.number;
    histogram.highest = static_cast<unsigned>(values - 1);

    double total = 0;
    double weighted = 0;
    bool any = false;
    for (std::size_t value = 0; value < values; ++value) {
        const std::uint32_t count = counts[value];
        if (count == 0)
            continue;
        histogram.bins[value * Histogram::BIN_COUNT / values] += count;
        if (!any)
            histogram.minimum = static_cast<unsigned>(value);
        any = true;
        histogram.maximum = static_cast<unsigned>(value);
        total += count;
        weighted += static_cast<double>(value) * count;
    }
    if (!any)
        return histogram;
    histogram.mean = weighted / total;
    histogram.dark = percentile(counts, total, DARK_SHARE);
    histogram.bright = percentile(counts, total, 1 - DARK_SHARE);
    return histogram;
}

} // namespace ovra::viewer
