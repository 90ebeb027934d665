/// \file
/// ImageKeeper: keeps the newest image of a DMA channel.
#pragma once

#include "ovra-lib-display/DisplayScene.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <vector>

namespace ovra::frontend {

/// An image of its own: 8-bit grey, row by row, without padding.
struct StoredImage
{
    std::vector<std::uint8_t> pixels;
    int width = 0;
    int height = 0;
    std::int64_t number = 0; ///< 1 for the first image since acquisition start
};

/// The visualizer of one display scene, from construction to destruction. Safe from any thread.
class ImageKeeper final : public display::DisplaySceneVisualizer
{
public:
    explicit ImageKeeper(const boost::shared_ptr<display::DisplayScene>& scene);
    ~ImageKeeper() override;
    ImageKeeper(const ImageKeeper&) = delete;
    ImageKeeper& operator=(const ImageKeeper&) = delete;

    void showImage(const display::Image& image) override;

    /// Images that arrived since construction.
    std::int64_t count() const;
    /// Empty, of size 0 x 0, before the first.
    StoredImage newest() const;
    /// Rate of the images since acquisition start, skipped ones included; 0 before the second.
    double imagesPerSecond() const;

private:
    using Clock = std::chrono::steady_clock;

    const boost::weak_ptr<display::DisplayScene> m_scene;
    mutable std::mutex m_mutex;
    StoredImage m_newest;
    std::int64_t m_count = 0;
    std::int64_t m_firstNumber = 0; ///< of the first image since acquisition start that came here
    Clock::time_point m_firstTime;
    Clock::time_point m_newestTime;
};

} // namespace ovra::frontend
