// SPDX-License-Identifier: MIT
/// \file
/// ReadWriteLock and its guard: many readers or one writer, writers first.
///
///   | inside       | a reader arrives                       | a writer arrives             |
///   |--------------|----------------------------------------|------------------------------|
///   | nobody       | enters, unless a writer waits          | enters                       |
///   | readers      | enters, unless a writer waits          | waits until all have left    |
///   | a writer     | waits                                  | waits                        |
///
/// Writer-preferring: from the moment a writer waits, no new reader enters before it. A stream of writers can
/// keep readers out forever; among writers, and among readers, there is no order. A reader that finds a
/// writer waiting while readers are still inside spins until that writer has got in, so sections must be
/// short.
///
/// Not recursive: a thread inside must not enter again, not even as a reader. Not for rarely read data: a
/// plain mutex is cheaper.
#pragma once

#include "platform/CriticalSection.h"
#include "platform/Guard.h"
#include "platform/ManualResetEvent.h"

#include <cstdint>

namespace ovra::templates::platform {

/// Any thread.
class ReadWriteLock
{
public:
    ReadWriteLock();
    virtual ~ReadWriteLock();
    ReadWriteLock(const ReadWriteLock&) = delete;
    ReadWriteLock& operator=(const ReadWriteLock&) = delete;

    void lockRead();
    void lockWrite();
    /// Leaves as a writer when one is inside, else as a reader.
    void unlock();

private:
    bool tryEnterAsReader();
    bool tryEnterAsWriter();

    std::uint32_t m_readers = 0;
    std::uint32_t m_waitingWriters = 0;
    std::uint32_t m_writerInside = 0;
    ManualResetEvent m_noReaders;
    ManualResetEvent m_noWriter;
    CriticalSection m_counters;
};

/// Holds a lock for the length of a scope.
class [[nodiscard]] ReadWriteLockGuard : public patterns::Guard<ReadWriteLock*>
{
public:
    enum Mode : int
    {
        Read = 1,
        Write = 2,
    };

    /// Another mode takes nothing, but the destructor still unlocks: callers use the two modes only.
    ReadWriteLockGuard(ReadWriteLock* lock, int mode);
    ~ReadWriteLockGuard() override;

private:
    // For a look in the debugger: nothing decides on it once the lock is taken.
    [[maybe_unused]] int m_mode;
};

} // namespace ovra::templates::platform
