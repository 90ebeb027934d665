// SPDX-License-Identifier: MIT
#include "pictures/Film.h"

#include "pictures/RecentCache.h"

#include <array>
#include <sstream>
#include <vector>

namespace simulation {

namespace {

constexpr std::size_t MAX_CYCLE_BYTES = 48UL << 20U;
constexpr std::size_t MAX_CACHE_BYTES = 256UL << 20U;
constexpr int SCENE_PICTURES = 8, PATTERN_PICTURES = 16;

template <class... Values>
std::string keyOf(const Values&... values)
{
    std::ostringstream text;
    text.precision(17);
    ((text << values << ' '), ...);
    return text.str();
}

int cycleLength(int width, int height, std::size_t pixelBytes, int wanted)
{
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * pixelBytes;
    return std::clamp(static_cast<int>(MAX_CYCLE_BYTES / bytes), 1, wanted);
}

// --- scenes

struct ScenePictures
{
    std::vector<Canvas> pictures;

    std::size_t bytes() const
    {
        const auto& first = pictures.front();
        return pictures.size() * sizeof(Light) * static_cast<std::size_t>(first.width()) *
               static_cast<std::size_t>(first.height());
    }
};

// Motion during the exposure blurs the picture: returns the mean of several moments.
Canvas moment(Scene scene, const Canvas& still, float phase, float length, int moments)
{
    auto picture = still;
    paintMoving(scene, picture, phase);
    for (int i = 1; i < moments; ++i) {
        auto later = still;
        const float t = phase + length * static_cast<float>(i) / static_cast<float>(moments);
        paintMoving(scene, later, t - std::floor(t));
        picture.average(later, 1 / static_cast<float>(i + 1));
    }
    return picture;
}

std::shared_ptr<const ScenePictures> drawScene(const SceneView& view)
{
    Canvas still(view.sensorWidth, view.sensorHeight, view.window);
    paintStill(view.scene, still);
    const int count = cycleLength(view.window.width, view.window.height, sizeof(Light), SCENE_PICTURES);
    const auto drawn = std::make_shared<ScenePictures>();
    for (int i = 0; i < count; ++i)
        drawn->pictures.push_back(moment(view.scene, still, static_cast<float>(i) / static_cast<float>(count),
                                         static_cast<float>(view.blur) / static_cast<float>(MAX_BLUR * count),
                                         view.blur + 1));
    return drawn;
}

std::shared_ptr<const ScenePictures> scenePictures(const SceneView& view)
{
    static auto* cache =
        new RecentCache<ScenePictures>(MAX_CACHE_BYTES); // threads may outlive static objects
    const auto& window = view.window;
    const auto key = keyOf(static_cast<int>(view.scene), view.sensorWidth, view.sensorHeight, window.x,
                           window.y, window.width, window.height, view.blur);
    return cache->get(key, [&] { return drawScene(view); });
}

// A sensor's noise, in samples: one table for all images, with another offset for each line and image.
class SensorNoise
{
public:
    SensorNoise()
    {
        for (std::size_t i = 0; i < m_values.size(); ++i) {
            const int x = static_cast<int>(i);
            const float digits = (scatter(x, 1) + scatter(x, 2) + scatter(x, 3) - 1.5F) * 5.0F + 0.5F;
            m_values[i] = digits * 256;
        }
    }

    std::size_t placeFor(std::size_t picture, int line) const
    {
        return static_cast<std::size_t>(scatter(line, 1000 + static_cast<int>(picture)) *
                                        static_cast<float>(SIZE));
    }
    float at(std::size_t place) const { return m_values[place % SIZE]; }

private:
    static constexpr std::size_t SIZE = 8192;

    std::array<float, SIZE> m_values{};
};

class SceneFilm final : public Film
{
public:
    SceneFilm(const SceneView& view, std::shared_ptr<const ScenePictures> drawn, std::string key)
        : Film(view.window.width, view.window.height, drawn->pictures.size(), std::move(key)),
          m_view(view),
          m_drawn(std::move(drawn))
    {}

    void readLine(std::size_t picture, int y, std::span<std::uint16_t> samples) const override
    {
        static const SensorNoise NOISE;
        const auto* light = m_drawn->pictures[picture].line(m_view.reverseY ? height() - 1 - y : y);
        const float gain = static_cast<float>(m_view.brightness) * 65535 / Light::FULL_LIGHT;
        auto place = NOISE.placeFor(picture, y);
        const auto exposed = [&](std::uint16_t value) {
            return static_cast<std::uint16_t>(
                std::clamp(static_cast<float>(value) * gain + NOISE.at(place++), 0.0F, 65535.0F));
        };
        auto* target = samples.data();
        for (int x = 0; x < width(); ++x) {
            const auto& pixel = light[m_view.reverseX ? width() - 1 - x : x];
            *target++ = exposed(pixel.red);
            *target++ = exposed(pixel.green);
            *target++ = exposed(pixel.blue);
        }
    }

private:
    const SceneView m_view;
    const std::shared_ptr<const ScenePictures> m_drawn;
};

// --- patterns

class PatternFilm final : public Film
{
public:
    PatternFilm(Pattern pattern, int width, int height, int depth, bool coloured, std::string key)
        : Film(width, height, static_cast<std::size_t>(cycleLength(width, height, 1, PATTERN_PICTURES)),
               std::move(key)),
          m_pattern(pattern),
          m_depth(depth),
          m_coloured(coloured)
    {}

    bool numbered() const override { return false; }

    void readLine(std::size_t picture, int y, std::span<std::uint16_t> samples) const override
    {
        const auto image = static_cast<int>(picture), count = static_cast<int>(pictures());
        auto* target = samples.data();
        for (int x = 0; x < width(); ++x) {
            if (m_pattern == Pattern::Checkerboard) {
                const int shifted = x + 64 * image / count; // the pattern repeats every two fields
                const auto sample = sampleOf((shifted / 32 + y / 32) % 2 == 0 ? part(24) : part(224));
                *target++ = sample;
                *target++ = sample;
                *target++ = sample;
            } else {
                const int shift = (1 << m_depth) * image / count;
                *target++ = sampleOf(m_coloured ? x + shift : x + y + shift);
                *target++ = sampleOf(m_coloured ? y + shift : x + y + shift);
                *target++ = sampleOf(x + y + shift);
            }
        }
    }

private:
    int part(int of255) const { return of255 * ((1 << m_depth) - 1) / 255; }
    std::uint16_t sampleOf(int code) const
    {
        return static_cast<std::uint16_t>(static_cast<unsigned int>(code) << (16 - m_depth));
    }

    const Pattern m_pattern;
    const int m_depth;
    const bool m_coloured;
};

} // namespace

std::shared_ptr<const Film> sceneFilm(const SceneView& view)
{
    const auto& window = view.window;
    auto key =
        keyOf("scene", static_cast<int>(view.scene), view.sensorWidth, view.sensorHeight, window.x, window.y,
              window.width, window.height, view.blur, view.brightness, view.reverseX, view.reverseY);
    return std::make_shared<SceneFilm>(view, scenePictures(view), std::move(key));
}

std::shared_ptr<const Film> patternFilm(Pattern pattern, int width, int height, int depth, bool coloured)
{
    return std::make_shared<PatternFilm>(
        pattern, width, height, depth, coloured,
        keyOf("pattern", static_cast<int>(pattern), width, height, depth, coloured));
}

bool quickToDraw(int width, int height)
{
    return static_cast<std::int64_t>(width) * height <= std::int64_t{4} << 20U;
}

} // namespace simulation
