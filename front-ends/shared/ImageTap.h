// SPDX-License-Identifier: MIT
/// \file
/// ImageTap: passes the images of a channel to a listener.
#pragma once

#include "ovra-lib-display/DisplayScene.h"

#include <functional>
#include <mutex>

namespace ovra::frontend {

/// Safe from any thread.
class ImageTap
{
public:
    using Listener = std::function<void(const display::Image&)>;

    /// Sets a listener that is called for each image, on the scene's thread; it must be quick and must not
    /// call this function. Empty: none. When this returns, the previous listener is not running.
    void setListener(Listener listener)
    {
        const std::lock_guard lock(m_mutex);
        m_listener.swap(listener);
    }

    /// Called by the scene's visualizer.
    void pass(const display::Image& image)
    {
        const std::lock_guard lock(m_mutex);
        if (m_listener)
            m_listener(image);
    }

private:
    std::mutex m_mutex;
    Listener m_listener;
};

} // namespace ovra::frontend
