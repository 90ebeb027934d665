// SPDX-License-Identifier: MIT
#include "pictures/WebFilm.h"

#include <sstream>

namespace simulation {

namespace {

constexpr int STRIP_LINES = 1024; // period of the weave; the repetition is invisible
constexpr float WHITE_SAMPLE = 65535;
constexpr float SELVEDGE = 0.04F; // bare table on either side, relative to the sensor's width
constexpr auto CLOTH = hue(0.62F, 0.74F, 1.0F), TABLE_BELOW = hue(1, 0.9F, 0.8F);

constexpr std::uint64_t FAULT_DISTANCE = 640; // lines; each stretch of this length has at most one fault
constexpr int MAX_FAULT_LINES = 320;

struct WebFault
{
    std::uint64_t firstLine;
    int lines;
    float x; ///< of its middle, in pixels of the sensor
    float halfWidth;
    float drift; ///< pixels per line
    bool round;  ///< else a scratch
    float luminance;
};

class WebFilm final : public Film
{
public:
    WebFilm(int sensorWidth, int firstColumn, int width, double brightness, bool reverseX, std::string key)
        : Film(width, STRIP_LINES, 1, std::move(key)),
          m_sensorWidth(sensorWidth),
          m_firstColumn(firstColumn),
          m_brightness(static_cast<float>(brightness)),
          m_reverseX(reverseX)
    {}

    bool scrolls() const override { return true; }
    bool numbered() const override { return false; }

    void readLine(std::size_t, int y, std::span<std::uint16_t> samples) const override
    {
        auto* target = samples.data();
        for (int x = 0; x < width(); ++x) {
            const auto colour = colourAt(m_firstColumn + (m_reverseX ? width() - 1 - x : x), y);
            *target++ = sampleOf(colour.red);
            *target++ = sampleOf(colour.green);
            *target++ = sampleOf(colour.blue);
        }
    }

    std::vector<Mark> marks(std::uint64_t first, int lines) const override
    {
        std::vector<Mark> marks;
        const auto end = first + static_cast<std::uint64_t>(lines);
        const auto earliest = first / FAULT_DISTANCE;
        for (auto stretch = earliest > 0 ? earliest - 1 : 0; stretch * FAULT_DISTANCE < end; ++stretch) {
            const auto fault = faultOf(stretch);
            for (int i = 0; i < fault.lines; ++i) {
                const auto line = fault.firstLine + static_cast<std::uint64_t>(i);
                if (line >= first && line < end)
                    marks.push_back(markOf(fault, i, static_cast<int>(line - first)));
            }
        }
        return marks;
    }

private:
    std::uint16_t sampleOf(float value) const
    {
        return static_cast<std::uint16_t>(
            std::clamp(value * m_brightness * WHITE_SAMPLE, 0.0F, WHITE_SAMPLE));
    }

    Colour colourAt(int x, int y) const
    {
        const float across = static_cast<float>(x) / static_cast<float>(m_sensorWidth);
        const float grain = scatter(x, y) - 0.5F;
        const float edge = std::min(across, 1 - across);
        if (edge < SELVEDGE)
            return tinted(0.10F + 0.02F * grain, TABLE_BELOW);
        const float lamp = 1 - 1.1F * (across - 0.5F) * (across - 0.5F);
        const bool over = (x / 3 + y / 4) % 2 == 0; // warp over weft, or below
        const float thread = (x % 3 == 0 ? -0.05F : 0) + (y % 4 == 0 ? -0.05F : 0) + (over ? 0.03F : -0.03F);
        const float hem = edge < SELVEDGE + 0.008F ? 0.12F : 0;
        return tinted((0.56F + thread + hem + 0.05F * grain) * lamp, CLOTH);
    }

    WebFault faultOf(std::uint64_t stretch) const
    {
        const auto random = [seed = static_cast<int>(stretch % 1'000'003)](int which) {
            return scatter(seed, which);
        };
        const auto width = static_cast<float>(m_sensorWidth);
        const float kind = random(1);
        WebFault fault{};
        fault.firstLine = stretch * FAULT_DISTANCE + static_cast<std::uint64_t>(random(2) * 300);
        fault.x = width * (0.10F + 0.80F * random(3));
        fault.round = kind < 0.5F;
        if (kind < 0.25F) // a hole: the table shows
            fault.luminance = 0.06F;
        else if (kind < 0.75F) // a knot, or a scratch
            fault.luminance = 0.92F;
        else // no fault here
            return fault;
        fault.halfWidth =
            fault.round ? width * (0.003F + 0.008F * random(4)) : std::max(1.0F, width * 0.0008F);
        fault.lines = fault.round ? std::max(2, static_cast<int>(2 * fault.halfWidth))
                                  : static_cast<int>(80 + (MAX_FAULT_LINES - 80) * random(5));
        fault.drift = fault.round ? 0 : 0.6F * (random(6) - 0.5F);
        return fault;
    }

    Mark markOf(const WebFault& fault, int line, int y) const
    {
        float half = fault.halfWidth;
        if (fault.round) {
            const float away = (static_cast<float>(line) + 0.5F) / fault.halfWidth - 1;
            half *= std::sqrt(std::max(0.0F, 1 - away * away));
        }
        const float middle =
            fault.x + fault.drift * static_cast<float>(line) - static_cast<float>(m_firstColumn);
        const int left = static_cast<int>(middle - half), count = std::max(1, static_cast<int>(2 * half));
        const auto sample = sampleOf(fault.luminance);
        return {m_reverseX ? width() - left - count : left, y, count, {sample, sample, sample}};
    }

    const int m_sensorWidth;
    const int m_firstColumn;
    const float m_brightness;
    const bool m_reverseX;
};

} // namespace

std::shared_ptr<const Film> webFilm(int sensorWidth, int firstColumn, int width, double brightness,
                                    bool reverseX)
{
    std::ostringstream key;
    key.precision(17);
    key << "web " << sensorWidth << ' ' << firstColumn << ' ' << width << ' ' << brightness << ' '
        << reverseX;
    return std::make_shared<WebFilm>(sensorWidth, firstColumn, width, brightness, reverseX, key.str());
}

} // namespace simulation
