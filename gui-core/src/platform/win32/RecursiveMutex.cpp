// SPDX-License-Identifier: MIT
#include "platform/RecursiveMutex.h"

#include <system_error>

#include <windows.h>

namespace ovra::templates::platform {

RecursiveMutex::RecursiveMutex() : m_handle(CreateMutexA(nullptr, FALSE, nullptr))
{
    if (!m_handle)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "RecursiveMutex");
}

RecursiveMutex::~RecursiveMutex()
{
    CloseHandle(m_handle);
}

void RecursiveMutex::lock()
{
    WaitForSingleObject(m_handle, INFINITE);
    ++m_lockCount;
}

void RecursiveMutex::unlock()
{
    // Counted while the mutex is still held, so that no other thread counts at the same time.
    --m_lockCount;
    ReleaseMutex(m_handle);
}

} // namespace ovra::templates::platform
