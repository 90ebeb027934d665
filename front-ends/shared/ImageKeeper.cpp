// SPDX-License-Identifier: MIT
#include "ImageKeeper.h"

#include <cstddef>

namespace ovra::frontend {

display::Image StoredImage::view() const
{
    display::Image image = description;
    image.pixels = bytes.data();
    return image;
}

ImageKeeper::ImageKeeper(const boost::shared_ptr<display::DisplayScene>& scene) : m_scene(scene)
{
    scene->setVisualizer(this);
}

// A complete unload has removed the visualizer already. After a failed one the scene still exists and must
// not call the keeper again.
ImageKeeper::~ImageKeeper()
{
    if (const auto scene = m_scene.lock())
        scene->setVisualizer(nullptr);
}

void ImageKeeper::showImage(const display::Image& image)
{
    keep(image);
    m_tap.pass(image);
}

void ImageKeeper::keep(const display::Image& image)
{
    const std::lock_guard lock(m_mutex);
    m_newest.bytes.assign(image.pixels, image.pixels + image.bytes());
    m_newest.description = image;
    m_newest.description.pixels = nullptr;
    ++m_count;
}

std::int64_t ImageKeeper::count() const
{
    const std::lock_guard lock(m_mutex);
    return m_count;
}

StoredImage ImageKeeper::newest() const
{
    const std::lock_guard lock(m_mutex);
    return m_newest;
}

} // namespace ovra::frontend
