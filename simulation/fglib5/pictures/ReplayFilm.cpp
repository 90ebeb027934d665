// SPDX-License-Identifier: MIT
#include "pictures/ReplayFilm.h"

#include "pictures/RecentCache.h"

#include <fstream>
#include <iterator>
#include <sstream>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace simulation {

namespace {

constexpr std::size_t MAX_CACHED_PICTURES = 128UL << 20U; // bytes

std::vector<unsigned char> contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A picture read from its file; size 0 if the file cannot be read.
struct StoredPicture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint16_t> samples; ///< red, green, blue

    std::size_t bytes() const { return samples.size() * sizeof(std::uint16_t); }
};

StoredPicture read(const std::filesystem::path& file)
{
    StoredPicture picture;
    const auto content = contentOf(file);
    int components = 0;
    const std::unique_ptr<stbi_us, void (*)(void*)> samples(
        stbi_load_16_from_memory(content.data(), static_cast<int>(content.size()), &picture.width,
                                 &picture.height, &components, 3),
        stbi_image_free);
    if (!samples)
        return {};
    const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 3;
    picture.samples.assign(samples.get(), samples.get() + count);
    return picture;
}

std::shared_ptr<const StoredPicture> cached(const std::filesystem::path& file)
{
    static auto* cache =
        new RecentCache<StoredPicture>(MAX_CACHED_PICTURES); // threads may outlive static objects
    std::error_code ignored;                                 // a missing file is black
    const auto changed = std::filesystem::last_write_time(file, ignored).time_since_epoch().count();
    return cache->get(file.string() + '|' + std::to_string(changed),
                      [&] { return std::make_shared<const StoredPicture>(read(file)); });
}

class ReplayFilm final : public Film
{
public:
    ReplayFilm(const ReplayView& view, std::string key)
        : Film(view.window.width, view.window.height, view.files.size(), std::move(key)),
          m_view(view)
    {}

    bool numbered() const override { return false; }

    void readLine(std::size_t picture, int y, std::span<std::uint16_t> samples) const override
    {
        const auto stored = opened(picture);
        const int sourceY = m_view.window.y + (m_view.reverseY ? height() - 1 - y : y);
        auto* target = samples.data();
        for (int x = 0; x < width(); ++x) {
            const int sourceX = m_view.window.x + (m_view.reverseX ? width() - 1 - x : x);
            const bool inside = sourceX < stored->width && sourceY < stored->height;
            const auto first = (static_cast<std::size_t>(sourceY) * static_cast<std::size_t>(stored->width) +
                                static_cast<std::size_t>(sourceX)) *
                               3;
            for (std::size_t i = 0; i < 3; ++i)
                *target++ = inside ? exposed(stored->samples[first + i]) : std::uint16_t{0};
        }
    }

private:
    // Keeps the last picture, because lines are read one after the other: the cache is used once per picture.
    std::shared_ptr<const StoredPicture> opened(std::size_t picture) const
    {
        const std::lock_guard lock(m_mutex);
        if (!m_open || m_openPosition != picture)
            m_open = cached(m_view.files[picture]);
        m_openPosition = picture;
        return m_open;
    }

    std::uint16_t exposed(std::uint16_t sample) const
    {
        return m_view.brightness == 1
                   ? sample
                   : static_cast<std::uint16_t>(std::min(sample * m_view.brightness, 65535.0));
    }

    const ReplayView m_view;
    mutable std::mutex m_mutex;
    mutable std::shared_ptr<const StoredPicture> m_open;
    mutable std::size_t m_openPosition = 0;
};

} // namespace

std::optional<std::pair<int, int>> pictureSize(const std::filesystem::path& file)
{
    const auto content = contentOf(file);
    int width = 0, height = 0, components = 0;
    if (stbi_info_from_memory(content.data(), static_cast<int>(content.size()), &width, &height,
                              &components) == 0)
        return {};
    return std::pair(width, height);
}

std::shared_ptr<const Film> replayFilm(const ReplayView& view)
{
    std::ostringstream key;
    key.precision(17);
    key << "replay " << view.window.x << ' ' << view.window.y << ' ' << view.window.width << ' '
        << view.window.height << ' ' << view.brightness << ' ' << view.reverseX << view.reverseY;
    for (const auto& file : view.files) {
        std::error_code ignored;
        key << '|' << file.string() << ' '
            << std::filesystem::last_write_time(file, ignored).time_since_epoch().count();
    }
    return std::make_shared<ReplayFilm>(view, key.str());
}

} // namespace simulation
