/// \file
/// ManualResetEvent: a signal that stays until it is taken back.
#pragma once

#include <atomic>
#include <cstdint>

namespace ovra::templates::platform {

/// Initially signalled. wait() returns at once while it is signalled, and blocks otherwise until set(). Any
/// thread.
class ManualResetEvent
{
public:
    /// Throws std::system_error when the system has no event left.
    ManualResetEvent();
    ~ManualResetEvent();
    ManualResetEvent(const ManualResetEvent&) = delete;
    ManualResetEvent& operator=(const ManualResetEvent&) = delete;

    void set();
    void reset();
    void wait();

private:
    // One of the two serves, depending on the platform.
    void* m_handle = nullptr;
    std::atomic<std::uint32_t> m_signalled{1};
};

} // namespace ovra::templates::platform
