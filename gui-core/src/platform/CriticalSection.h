/// \file
/// CriticalSection: the lock for a handful of instructions inside other locks.
#pragma once

#include "platform/Guard.h"

namespace ovra::templates::platform {

/// Not to be taken twice by one thread, nor held across anything that blocks. Any thread.
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
    // Storage for the platform's own object; 8 pointers hold each of them.
    alignas(void*) unsigned char m_storage[8 * sizeof(void*)];
};

/// Stays in a critical section for the length of a scope.
class [[nodiscard]] CriticalSectionGuard final : public patterns::Guard<CriticalSection*>
{
public:
    explicit CriticalSectionGuard(CriticalSection* section) : Guard(section, true) { section->enter(); }
    ~CriticalSectionGuard() override { object()->leave(); }
};

} // namespace ovra::templates::platform
