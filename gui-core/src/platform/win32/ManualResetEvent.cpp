// SPDX-License-Identifier: MIT
#include "platform/ManualResetEvent.h"

#include <system_error>

#include <windows.h>

namespace ovra::templates::platform {

ManualResetEvent::ManualResetEvent() : m_handle(CreateEventA(nullptr, TRUE, TRUE, nullptr))
{
    if (!m_handle)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "ManualResetEvent");
}

ManualResetEvent::~ManualResetEvent()
{
    CloseHandle(m_handle);
}

void ManualResetEvent::set()
{
    SetEvent(m_handle);
}

void ManualResetEvent::reset()
{
    ResetEvent(m_handle);
}

void ManualResetEvent::wait()
{
    WaitForSingleObject(m_handle, INFINITE);
}

} // namespace ovra::templates::platform
