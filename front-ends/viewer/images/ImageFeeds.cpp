// SPDX-License-Identifier: MIT
#include "images/ImageFeeds.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace ovra::viewer {

namespace {

constexpr std::chrono::milliseconds HISTOGRAM_INTERVAL{200};

nlohmann::json describe(std::uint32_t channel, const Histogram& histogram)
{
    return {{"type", "histogram"},          {"channel", channel},           {"image", histogram.image},
            {"bins", histogram.bins},       {"highest", histogram.highest}, {"minimum", histogram.minimum},
            {"maximum", histogram.maximum}, {"mean", histogram.mean},       {"dark", histogram.dark},
            {"bright", histogram.bright}};
}

} // namespace

ImageFeed::ImageFeed(std::uint32_t id, std::function<void()> arrived)
    : m_id(id),
      m_mailbox([this, arrived = std::move(arrived)] {
          m_news = true;
          arrived();
      })
{}

std::shared_ptr<const std::string> ImageFeed::histogramMessage(const Frame& frame, std::uint64_t& sequence)
{
    const std::lock_guard lock(m_histogramMutex);
    const auto now = std::chrono::steady_clock::now();
    if (!m_histogram ||
        (m_histogramSequence != frame.sequence && now - m_histogramTime >= HISTOGRAM_INTERVAL)) {
        m_histogram = std::make_shared<const std::string>(describe(m_id, measure(frame)).dump());
        m_histogramSequence = frame.sequence;
        m_histogramTime = now;
    }
    sequence = m_histogramSequence;
    return m_histogram;
}

std::shared_ptr<ImageFeed> ImageFeeds::add()
{
    const std::lock_guard lock(m_mutex);
    const std::uint32_t id = ++m_lastId;
    auto channel = std::make_shared<ImageFeed>(id, [this] { announce(); });
    m_channels[id] = channel;
    return channel;
}

void ImageFeeds::remove(std::uint32_t id)
{
    const std::lock_guard lock(m_mutex);
    m_channels.erase(id);
}

std::shared_ptr<ImageFeed> ImageFeeds::find(std::uint32_t id) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_channels.find(id);
    return found == m_channels.end() ? nullptr : found->second;
}

void ImageFeeds::setListener(std::function<void()> listener)
{
    const std::lock_guard lock(m_listenerMutex);
    m_listener = std::move(listener);
}

std::vector<std::uint32_t> ImageFeeds::takeNews()
{
    std::vector<std::uint32_t> fresh;
    const std::lock_guard lock(m_mutex);
    for (const auto& [id, channel] : m_channels)
        if (channel->takeNews())
            fresh.push_back(id);
    return fresh;
}

void ImageFeeds::announce()
{
    const std::lock_guard lock(m_listenerMutex);
    if (m_listener)
        m_listener();
}

} // namespace ovra::viewer
