/// \file
/// The images that a source sends, drawn beforehand: a cycle of a few, so that an image costs one copy.
#pragma once

#include "pictures/Patterns.h"
#include "pictures/Scenes.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace simulation {

class FrameCycle
{
public:
    /// Draw the cycle, or take it from those kept of late. A first drawing takes some 0.1 s a megapixel.
    /// Large images make a shorter cycle.
    static std::shared_ptr<const FrameCycle> ofScene(Scene scene, int width, int height);
    static std::shared_ptr<const FrameCycle> ofPattern(Pattern pattern, int width, int height);

    /// Whether a cycle of this size may be drawn before anybody has asked for it.
    static bool quickToDraw(int width, int height);

    /// Writes image \p number (from 0) as a DMA channel does: the pixels of the image, line after line, as
    /// one stream into \p target. The channel cuts that stream into lines of its own width, so a camera of
    /// another width shows as a slanted picture. What the image does not fill is black, what does not fit is
    /// dropped. A scene's image carries its number (from 1) in the upper left corner.
    void write(std::uint64_t number, std::span<std::uint8_t> target) const;

    std::size_t bytes() const;

private:
    FrameCycle(int width, int height);
    void stampNumber(std::uint64_t number, std::span<std::uint8_t> target) const;

    int m_width;
    int m_height;
    bool m_numbered = false;
    std::vector<std::vector<std::uint8_t>> m_images;
};

/// What a source sends at present. A new object means a new start.
struct Stream
{
    std::shared_ptr<const FrameCycle> images;
    double frameRate; ///< images per second, 0 = as fast as possible
    std::chrono::steady_clock::time_point start;
};

} // namespace simulation
