#include "ImageKeeper.h"

#include <cstddef>

namespace ovra::frontend {

ImageKeeper::ImageKeeper(const boost::shared_ptr<display::DisplayScene>& scene) : m_scene(scene)
{
    scene->setVisualizer(this);
}

// An unload has taken the keeper off already. A scene that outlived a failed one must not call it any more.
ImageKeeper::~ImageKeeper()
{
    if (const auto scene = m_scene.lock())
        scene->setVisualizer(nullptr);
}

void ImageKeeper::showImage(const display::Image& image)
{
    const auto size = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    const auto now = Clock::now();
    const std::lock_guard lock(m_mutex);
    if (m_count == 0 || image.number <= m_newest.number) { // numbers begin anew with each start
        m_firstNumber = image.number;
        m_firstTime = now;
    }
    m_newestTime = now;
    m_newest.pixels.assign(image.pixels, image.pixels + size);
    m_newest.width = image.width;
    m_newest.height = image.height;
    m_newest.number = image.number;
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

double ImageKeeper::imagesPerSecond() const
{
    const std::lock_guard lock(m_mutex);
    const double seconds = std::chrono::duration<double>(m_newestTime - m_firstTime).count();
    return seconds > 0 ? static_cast<double>(m_newest.number - m_firstNumber) / seconds : 0;
}

} // namespace ovra::frontend
