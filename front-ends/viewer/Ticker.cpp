// SPDX-License-Identifier: MIT
#include "Ticker.h"

#include <utility>

namespace ovra::viewer {

Ticker::Ticker(std::chrono::milliseconds interval, std::function<void()> tick)
    : m_thread([this, interval, tick = std::move(tick)] {
          std::unique_lock lock(m_mutex);
          while (!m_changed.wait_for(lock, interval, [this] { return m_ended; })) {
              lock.unlock();
              tick();
              lock.lock();
          }
      })
{}

Ticker::~Ticker()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

} // namespace ovra::viewer
