/// \file
/// ManualResetEvent: a signal that stays until it is taken back.
#pragma once

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
    void* m_handle;
};

} // namespace ovra::templates::platform
