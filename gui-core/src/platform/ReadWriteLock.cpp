// SPDX-License-Identifier: MIT
#include "platform/ReadWriteLock.h"

#include "platform/CriticalSection.h"

namespace ovra::templates::platform {

ReadWriteLock::ReadWriteLock() = default;

ReadWriteLock::~ReadWriteLock() = default;

void ReadWriteLock::lockRead()
{
    // While a writer waits and readers are inside, the no-writer event is signalled and this loop spins: no
    // event could wake a reader once the writer has entered.
    do
        m_noWriter.wait();
    while (!tryEnterAsReader());
}

bool ReadWriteLock::tryEnterAsReader()
{
    const CriticalSectionGuard guard(&m_counters);
    if (m_writerInside != 0 || m_waitingWriters != 0)
        return false;
    ++m_readers;
    m_noReaders.reset();
    return true;
}

void ReadWriteLock::lockWrite()
{
    {
        const CriticalSectionGuard guard(&m_counters);
        ++m_waitingWriters;
    }
    do {
        m_noReaders.wait();
        m_noWriter.wait();
    } while (!tryEnterAsWriter());
}

bool ReadWriteLock::tryEnterAsWriter()
{
    const CriticalSectionGuard guard(&m_counters);
    if (m_readers != 0 || m_writerInside != 0)
        return false;
    --m_waitingWriters;
    m_writerInside = 1;
    m_noWriter.reset();
    return true;
}

void ReadWriteLock::unlock()
{
    const CriticalSectionGuard guard(&m_counters);
    if (m_writerInside != 0) {
        m_writerInside = 0;
        m_noWriter.set();
    } else if (m_readers-- == 1) {
        m_noReaders.set();
    }
}

ReadWriteLockGuard::ReadWriteLockGuard(ReadWriteLock* lock, int mode) : Guard(lock, true), m_mode(mode)
{
    if (mode == Read)
        lock->lockRead();
    else if (mode == Write)
        lock->lockWrite();
}

ReadWriteLockGuard::~ReadWriteLockGuard()
{
    if (owns())
        object()->unlock();
}

} // namespace ovra::templates::platform
