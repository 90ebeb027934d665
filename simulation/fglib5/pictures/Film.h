/// \file
/// Films: what a source shows, as a cycle of pictures in 16 bits a colour.
///
///   Film           the cycle, line by line
///   SceneView      what a camera sees of a scene, and how
///   sceneFilm, patternFilm
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

/// Pixels of one line that look the same.
struct Mark
{
    int x, y, count;
    std::array<std::uint16_t, 3> rgb; ///< as of Film::readLine
};

/// Safe from any thread.
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
    /// Equal for films that show the same.
    const std::string& key() const { return m_key; }
    /// Whether its pictures carry their number.
    virtual bool numbered() const { return true; }

    /// Red, green and blue of each pixel of a line; 65535 is white.
    virtual void readLine(std::size_t picture, int y, std::span<std::uint16_t> samples) const = 0;

    /// Whether it is an endless strip, of which images are cut: its one picture is repeated.
    virtual bool scrolls() const { return false; }
    /// What a scrolling film shows once, on top of its picture, in the lines from \p first on; y counts from
    /// there.
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
    Scene scene;
    int sensorWidth; ///< pixels
    int sensorHeight;
    Window window;         ///< of the sensor
    int blur = 0;          ///< exposure in parts of the time from image to image, 0 to MAX_BLUR
    double brightness = 1; ///< 1: as the scene is painted
    bool reverseX = false;
    bool reverseY = false;

    bool operator==(const SceneView&) const = default;
};

/// Draws what has not been drawn of late: some 0.2 s a megapixel.
std::shared_ptr<const Film> sceneFilm(const SceneView& view);

/// The pattern in all of \p depth bits; \p coloured ramps differ from colour to colour.
std::shared_ptr<const Film> patternFilm(Pattern pattern, int width, int height, int depth, bool coloured);

/// Whether a film of this size may be drawn before anybody has asked for it.
bool quickToDraw(int width, int height);

} // namespace simulation
