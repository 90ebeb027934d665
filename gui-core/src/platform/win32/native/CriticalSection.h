/// \file
/// CriticalSection: the lock for a handful of instructions inside other locks.
#pragma once

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
    // Storage for the system's own object, which the source checks the size of.
    alignas(void*) unsigned char m_storage[8 * sizeof(void*)];
};

} // namespace ovra::templates::platform
