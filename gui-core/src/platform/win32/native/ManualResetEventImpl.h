// SPDX-License-Identifier: MIT
/// \file
/// ManualResetEvent on Windows: the system's.
#pragma once

namespace ovra::templates::platform {

/// See platform/ManualResetEvent.h.
class ManualResetEvent
{
public:
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
