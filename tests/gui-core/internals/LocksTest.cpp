// SPDX-License-Identifier: MIT
#include "platform/ReadWriteLock.h"
#include "platform/RecursiveMutex.h"
#include "platform/SpinLockVariableGuard.h"
#include "platform/Thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using namespace ovra::templates::platform;

namespace {

/// A barrier for threads. Not std::latch, which loses wake-ups in the cross compiler's library.
class MeetingPoint
{
public:
    explicit MeetingPoint(int count) : m_missing(count) {}

    void arriveAndWait()
    {
        --m_missing;
        while (m_missing > 0)
            std::this_thread::yield();
    }

private:
    std::atomic<int> m_missing;
};

void onThreads(int count, const std::function<void(int)>& work)
{
    MeetingPoint start(count);
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([&, i] {
            start.arriveAndWait();
            work(i);
        });
}

#if defined(OVRA_THREAD_SANITIZER)
// More spinning threads keep the sanitizer's own lock from the one that releases.
constexpr int THREADS[] = {2, 4};
#else
constexpr int THREADS[] = {2, 4, 16};
#endif

// The exclusive locks: take() returns a guard; takeAgain() takes the lock again within it, if that is
// allowed.

struct SpinLock
{
    std::atomic<std::int32_t> lock{0};
    auto take() { return SpinLockVariableGuard(&lock); }
    void takeAgain() {}
    bool isFree() const { return lock == 0; }
};

struct OwnedSpinLock
{
    std::atomic<std::int32_t> lock{0};
    std::atomic<std::uint32_t> owner{0};
    auto take() { return SpinLockVariableGuard(&lock, &owner); }
    void takeAgain() { const auto inner = take(); }
    bool isFree() const { return lock == 0 && owner == 0; }
};

struct Mutex
{
    RecursiveMutex mutex;
    auto take() { return RecursiveMutexGuard(&mutex); }
    void takeAgain() { const auto inner = take(); }
    bool isFree() const { return true; } // not visible from outside
};

template <class Lock>
class ExclusiveLocks : public testing::Test
{};

} // namespace

using ExclusiveKinds = testing::Types<SpinLock, OwnedSpinLock, Mutex>;
TYPED_TEST_SUITE(ExclusiveLocks, ExclusiveKinds);

TYPED_TEST(ExclusiveLocks, LetOneThreadInAtATimeHoweverDeep)
{
    for (const int threads : THREADS) {
        TypeParam lock;
        int plain = 0;
        onThreads(threads, [&](int) {
            for (int i = 0; i < 500; ++i) {
                const auto outer = lock.take();
                lock.takeAgain();
                ++plain;
            }
        });
        EXPECT_EQ(plain, 500 * threads);
        EXPECT_TRUE(lock.isFree());
    }
}

TYPED_TEST(ExclusiveLocks, StayTakenUntilTheOutermostGuardEnds)
{
    TypeParam lock;
    std::atomic<bool> entered{false};
    std::jthread other;
    {
        const auto outer = lock.take();
        lock.takeAgain();
        other = std::jthread([&] {
            const auto guard = lock.take();
            entered = true;
        });
        for (int i = 0; i < 50; ++i)
            std::this_thread::yield();
        EXPECT_FALSE(entered);
    }
    other.join();
    EXPECT_TRUE(entered);
    EXPECT_TRUE(lock.isFree());
}

TEST(ThreadIds, AreStableDifferAndAreNeverZero)
{
    std::uint32_t other = 0;
    std::thread([&other] { other = currentThreadId(); }).join();
    EXPECT_EQ(currentThreadId(), currentThreadId());
    EXPECT_NE(currentThreadId(), 0U);
    EXPECT_NE(other, 0U);
    EXPECT_NE(currentThreadId(), other);
}

TEST(ReadWriteLocks, LetWritersInAloneAndReadersTogetherWhoSeeWholeWrites)
{
    for (const int threads : THREADS) {
        ReadWriteLock lock;
        int first = 0;
        int second = 0;
        std::atomic<int> torn{0};
        onThreads(threads, [&](int thread) {
            for (int i = 0; i < 200; ++i) {
                if (thread % 2 == 0) {
                    const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Write);
                    ++first;
                    ++second;
                } else {
                    const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Read);
                    torn += first != second;
                }
            }
        });
        EXPECT_EQ(torn, 0);
        EXPECT_EQ(first, 200 * threads / 2);
        EXPECT_EQ(second, first);

        MeetingPoint allInside(threads);
        // If one reader blocks another, this hangs and fails by the time limit.
        onThreads(threads, [&](int) {
            const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Read);
            allInside.arriveAndWait();
        });
    }
}

TEST(ReadWriteLocks, AReaderThatComesAndGoesStopsEnteringOnceAWriterWaits)
{
    ReadWriteLock lock;
    std::atomic<int> entries{0};
    std::atomic<bool> running{true};
    std::atomic<bool> writerEntered{false};

    lock.lockRead();
    std::jthread reader([&] {
        while (running) {
            const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Read);
            ++entries;
        }
    });
    while (entries < 100)
        std::this_thread::yield();
    std::jthread writer([&] {
        const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Write);
        writerEntered = true;
    });
    // If readers still enter while a writer waits, this hangs and fails by the time limit.
    for (int stalled = 0, seen = entries; stalled < 500; ++stalled) {
        std::this_thread::yield();
        if (seen != entries)
            stalled = 0;
        seen = entries;
    }
    EXPECT_FALSE(writerEntered);
    lock.unlock();
    writer.join();
    running = false;
}

TEST(ReadWriteLocks, AGuardWithAnotherModeTakesNothingButStillReleases)
{
    ReadWriteLock lock;
    lock.lockRead();
    {
        const ReadWriteLockGuard odd(&lock, 7);
    }
    // The guard with the invalid mode has released the reader above, so a writer enters at once.
    const ReadWriteLockGuard writer(&lock, ReadWriteLockGuard::Write);
}
