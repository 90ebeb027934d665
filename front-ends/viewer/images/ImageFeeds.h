// SPDX-License-Identifier: MIT
/// \file
/// ImageFeeds: the DMA channels whose images pages can show. The GUI thread adds and removes them; the
/// network thread reads their images.
#pragma once

#include "images/Histogram.h"
#include "images/ImageMailbox.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ovra::viewer {

/// Safe from any thread.
class ImageFeed
{
public:
    ImageFeed(std::uint32_t id, std::function<void()> arrived);

    std::uint32_t id() const { return m_id; }
    ImageMailbox& mailbox() { return m_mailbox; }
    const ImageMailbox& mailbox() const { return m_mailbox; }

    /// The message with the histogram of \p frame, or of a frame at most 200 ms older. \p sequence returns
    /// that frame's sequence.
    std::shared_ptr<const std::string> histogramMessage(const Frame& frame, std::uint64_t& sequence);

    /// True once after each image.
    bool takeNews() { return m_news.exchange(false); }

private:
    const std::uint32_t m_id;
    ImageMailbox m_mailbox;
    std::atomic<bool> m_news{false};
    std::mutex m_histogramMutex;
    std::shared_ptr<const std::string> m_histogram;
    std::uint64_t m_histogramSequence = 0;
    std::chrono::steady_clock::time_point m_histogramTime;
};

/// Safe from any thread.
class ImageFeeds
{
public:
    /// Adds a channel with a new number; numbers are never reused.
    std::shared_ptr<ImageFeed> add();
    void remove(std::uint32_t id);
    /// Null if there is none.
    std::shared_ptr<ImageFeed> find(std::uint32_t id) const;

    /// Sets a listener that is called after each image, on the scene's thread; it must be quick. Empty: none.
    /// When this returns, the previous listener is not running.
    void setListener(std::function<void()> listener);
    /// The channels that got images since the last call.
    std::vector<std::uint32_t> takeNews();

private:
    void announce();

    mutable std::mutex m_mutex;
    std::map<std::uint32_t, std::shared_ptr<ImageFeed>> m_channels;
    std::uint32_t m_lastId = 0;
    std::mutex m_listenerMutex;
    std::function<void()> m_listener;
};

} // namespace ovra::viewer
