// SPDX-License-Identifier: MIT
/// \file
/// ImageKeeper: keeps the newest image of a DMA channel.
#pragma once

#include "ImageTap.h"

#include "ovra-lib-display/DisplayScene.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <mutex>
#include <vector>

namespace ovra::frontend {

/// A copy of an image.
struct StoredImage
{
    std::vector<std::uint8_t> bytes; ///< empty: no image
    display::Image description;      ///< all fields except pixels

    /// The image with its pixels. Valid while this object does not change.
    display::Image view() const;
};

/// The visualizer of one display scene, from construction to destruction. Any thread.
class ImageKeeper final : public display::DisplaySceneVisualizer
{
public:
    explicit ImageKeeper(const boost::shared_ptr<display::DisplayScene>& scene);
    ~ImageKeeper() override;
    ImageKeeper(const ImageKeeper&) = delete;
    ImageKeeper& operator=(const ImageKeeper&) = delete;

    void showImage(const display::Image& image) override;

    /// Passes each image to another listener.
    ImageTap& tap() { return m_tap; }

    /// Number of images since construction.
    std::int64_t count() const;
    /// Has no bytes before the first image.
    StoredImage newest() const;

private:
    void keep(const display::Image& image);

    const boost::weak_ptr<display::DisplayScene> m_scene;
    ImageTap m_tap;
    mutable std::mutex m_mutex;
    StoredImage m_newest;
    std::int64_t m_count = 0;
};

} // namespace ovra::frontend
