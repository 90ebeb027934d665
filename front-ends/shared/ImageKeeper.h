/// \file
/// ImageKeeper: keeps the newest image of a DMA channel.
#pragma once

#include "ovra-lib-display/DisplayScene.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace ovra::frontend {

/// An image of its own.
struct StoredImage
{
    std::vector<std::uint8_t> bytes; ///< empty: no image
    display::Image description;      ///< of the image, but for its pixels

    /// The image. Valid as long as this object is not changed.
    display::Image view() const;
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

    /// \p listener gets each image that arrives, on the scene's thread, which it should not keep waiting;
    /// empty: nobody does. It must not call this function. When the call returns, the listener before is no
    /// longer running.
    using Listener = std::function<void(const display::Image&)>;
    void setListener(Listener listener);

    /// Images that arrived since construction.
    std::int64_t count() const;
    /// Without bytes before the first.
    StoredImage newest() const;

private:
    void keep(const display::Image& image);

    const boost::weak_ptr<display::DisplayScene> m_scene;
    std::mutex m_listenerMutex;
    Listener m_listener;
    mutable std::mutex m_mutex;
    StoredImage m_newest;
    std::int64_t m_count = 0;
};

} // namespace ovra::frontend
