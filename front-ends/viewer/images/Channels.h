/// \file
/// Channels: the DMA channels whose images can be looked at, for the GUI thread, which adds and removes them,
/// and for the network's threads, which read their images.
#pragma once

#include "images/Histogram.h"
#include "images/ImageMailbox.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ovra::viewer {

/// Safe from any thread.
class Channel
{
public:
    Channel(std::uint32_t id, std::function<void()> arrived);

    std::uint32_t id() const { return m_id; }
    ImageMailbox& mailbox() { return m_mailbox; }
    const ImageMailbox& mailbox() const { return m_mailbox; }

    /// The message with the histogram of \p frame or of one less than 100 ms older. \p sequence is that of
    /// the frame it was taken from.
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
class Channels
{
public:
    /// A channel with a number that no channel had before.
    std::shared_ptr<Channel> add();
    void remove(std::uint32_t id);
    /// Empty when there is none.
    std::shared_ptr<Channel> find(std::uint32_t id) const;

    /// Blocks until images have arrived, and tells where; empty once end() was called.
    std::vector<std::uint32_t> waitForNews();
    void end();

private:
    void announce();

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::uint32_t, std::shared_ptr<Channel>> m_channels;
    std::uint32_t m_lastId = 0;
    bool m_news = false;
    bool m_ended = false;
};

} // namespace ovra::viewer
