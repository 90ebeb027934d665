// SPDX-License-Identifier: MIT
/// \file
/// Film: the pictures of a source as a cycle, in 16 bits per colour.
///
///   Film           the cycle, line by line
///   SceneView      a camera's view of a scene: region, blur, brightness
///   sceneFilm      the film of a scene
///   patternFilm    the film of a test pattern
#pragma once

#include "pictures/Canvas.h"
#include "pictures/Patterns.h"
#include "pictures/Scenes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace simulation {

/// A run of equal pixels in one line.
struct Mark
{
    int x, y, count;
    std::array<std::uint16_t, 3> rgb; ///< as in Film::readLine
};

/// Any thread.
class Film
{
public:
    Film(int width, int height, std::size_t pictures, std::string key)
        : m_width(width),
          m_height(height),
          m_pictures(pictures),
          m_key(std::move(key))
    {}
    virtual ~Film() = default;
    Film(const Film&) = delete;
    Film& operator=(const Film&) = delete;

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t pictures() const { return m_pictures; }
    /// Equal for films with the same pictures.
    const std::string& key() const { return m_key; }
    /// True if each image shows its number.
    virtual bool numbered() const { return true; }

    /// Reads red, green and blue of each pixel of a line; 65535 is white.
    virtual void readLine(std::size_t picture, int y, std::span<std::uint16_t> samples) const = 0;

    /// True for an endless strip, which images are cut from; its single picture repeats.
    virtual bool scrolls() const { return false; }
    /// Marks that a scrolling film shows once, on top of its picture, in \p lines lines from \p first on; y
    /// counts from \p first.
    virtual std::vector<Mark> marks([[maybe_unused]] std::uint64_t first, [[maybe_unused]] int lines) const
    {
        return {};
    }

private:
    const int m_width;
    const int m_height;
    const std::size_t m_pictures;
    const std::string m_key;
};

inline constexpr int MAX_BLUR = 8;

struct SceneView
{
    Scene scene = {};
    int sensorWidth = 0; ///< pixels
    int sensorHeight = 0;
    Window window = {};    ///< of the sensor
    int blur = 0;          ///< exposure as a part of the time between two images, 0 to MAX_BLUR
    double brightness = 1; ///< 1: normal brightness of the scene
    bool reverseX = false;
    bool reverseY = false;

    bool operator==(const SceneView&) const = default;
};

/// Draws the view in about 0.2 s per megapixel, unless the cache has it.
std::shared_ptr<const Film> sceneFilm(const SceneView& view);

/// The pattern in \p depth bits; if \p coloured, the ramps of red, green and blue differ.
std::shared_ptr<const Film> patternFilm(Pattern pattern, int width, int height, int depth, bool coloured);

/// True if a film of this size is small enough to be drawn in advance.
bool quickToDraw(int width, int height);

} // namespace simulation
