// SPDX-License-Identifier: MIT
/// \file
/// CriticalSection on Windows: the system's.
#pragma once

namespace ovra::templates::platform {

/// See platform/CriticalSection.h.
class CriticalSection
{
public:
    CriticalSection();
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void enter();
    void leave();

private:
    // Storage for the system's object; the source checks its size.
    alignas(void*) unsigned char m_storage[8 * sizeof(void*)]{};
};

} // namespace ovra::templates::platform
