#include "native/Thread.h"
#include "platform/ReadWriteLock.h"
#include "platform/RecursiveMutex.h"
#include "platform/SpinLockVariableGuard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using namespace ovra::templates::platform;

namespace {

/// Where threads wait until all have come. Not std::latch, which loses wake-ups with the cross compiler's
/// library.
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

    bool complete() const { return m_missing == 0; }

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

void waitFor(const std::atomic<bool>& flag)
{
    while (!flag)
        std::this_thread::yield();
}

class LocksWithThreads : public testing::TestWithParam<int>
{};

} // namespace

INSTANTIATE_TEST_SUITE_P(Threads, LocksWithThreads, testing::Values(2, 4, 16));

TEST(ThreadIds, AreStableDifferAndAreNeverZero)
{
    std::uint32_t other = 0;
    std::thread([&other] { other = currentThreadId(); }).join();
    EXPECT_EQ(currentThreadId(), currentThreadId());
    EXPECT_NE(currentThreadId(), 0U);
    EXPECT_NE(other, 0U);
    EXPECT_NE(currentThreadId(), other);
}

TEST_P(LocksWithThreads, SpinLockLetsOneThreadInAtATime)
{
    std::atomic<std::int32_t> lock{0};
    std::atomic<std::uint32_t> owner{0};
    int plain = 0;
    onThreads(GetParam(), [&](int) {
        for (int i = 0; i < 500; ++i) {
            const SpinLockVariableGuard outer(&lock, &owner);
            const SpinLockVariableGuard inner(&lock, &owner);
            ++plain;
        }
    });
    EXPECT_EQ(plain, 500 * GetParam());
    EXPECT_EQ(lock, 0);
    EXPECT_EQ(owner, 0U);
}

TEST(SpinLock, InnerGuardOfTheOwnerLeavesTheLockTaken)
{
    std::atomic<std::int32_t> lock{0};
    std::atomic<std::uint32_t> owner{0};
    {
        const SpinLockVariableGuard outer(&lock, &owner);
        {
            const SpinLockVariableGuard inner(&lock, &owner);
        }
        EXPECT_EQ(lock, 1);
        EXPECT_EQ(owner, currentThreadId());
    }
    EXPECT_EQ(lock, 0);
    EXPECT_EQ(owner, 0U);
}

TEST(SpinLock, WithoutAnOwnerWordASecondGuardWaitsForTheFirst)
{
    std::atomic<std::int32_t> lock{0};
    std::atomic<bool> entered{false};
    std::jthread second;
    {
        const SpinLockVariableGuard first(&lock);
        second = std::jthread([&] {
            const SpinLockVariableGuard guard(&lock);
            entered = true;
        });
        for (int i = 0; i < 50; ++i)
            std::this_thread::yield();
        EXPECT_FALSE(entered);
    }
    second.join();
    EXPECT_TRUE(entered);
}

TEST_P(LocksWithThreads, RecursiveMutexLetsOneThreadInAtATimeHoweverDeep)
{
    RecursiveMutex mutex;
    int plain = 0;
    onThreads(GetParam(), [&](int) {
        for (int i = 0; i < 300; ++i) {
            const RecursiveMutexGuard outer(&mutex);
            const RecursiveMutexGuard inner(&mutex);
            ++plain;
        }
    });
    EXPECT_EQ(plain, 300 * GetParam());
}

TEST(RecursiveMutexes, StayTakenUntilTheOutermostGuardEnds)
{
    RecursiveMutex mutex;
    std::atomic<bool> entered{false};
    std::jthread other;
    {
        const RecursiveMutexGuard outer(&mutex);
        {
            const RecursiveMutexGuard inner(&mutex);
        }
        other = std::jthread([&] {
            const RecursiveMutexGuard guard(&mutex);
            entered = true;
        });
        for (int i = 0; i < 50; ++i)
            std::this_thread::yield();
        EXPECT_FALSE(entered);
    }
    other.join();
    EXPECT_TRUE(entered);
}

TEST_P(LocksWithThreads, WritersAreAloneAndReadersSeeWholeWrites)
{
    ReadWriteLock lock;
    int first = 0;
    int second = 0;
    std::atomic<int> torn{0};
    onThreads(GetParam(), [&](int thread) {
        for (int i = 0; i < 200; ++i) {
            if (thread % 2 == 0) {
                const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Write);
                ++first;
                ++second;
            } else {
                const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Read);
                if (first != second)
                    ++torn;
            }
        }
    });
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(first, 200 * ((GetParam() + 1) / 2));
    EXPECT_EQ(second, first);
}

TEST_P(LocksWithThreads, ReadersAreInsideTogether)
{
    ReadWriteLock lock;
    MeetingPoint allInside(GetParam());
    // Hangs, and fails by the time limit, if one reader keeps another out.
    onThreads(GetParam(), [&](int) {
        const ReadWriteLockGuard guard(&lock, ReadWriteLockGuard::Read);
        allInside.arriveAndWait();
    });
    EXPECT_TRUE(allInside.complete());
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
    // Hangs, and fails by the time limit, when readers go on entering past the waiting writer.
    for (int stalled = 0, seen = entries; stalled < 500; ++stalled) {
        std::this_thread::yield();
        if (seen != entries)
            stalled = 0;
        seen = entries;
    }
    EXPECT_FALSE(writerEntered);
    lock.unlock();
    waitFor(writerEntered);
    running = false;
}

TEST(ReadWriteLocks, AGuardWithAnotherModeTakesNothingButStillReleases)
{
    ReadWriteLock lock;
    lock.lockRead();
    {
        const ReadWriteLockGuard odd(&lock, 7);
        EXPECT_EQ(odd.mode(), 7);
    }
    // The odd guard has released the reader above, so a writer enters at once.
    const ReadWriteLockGuard writer(&lock, ReadWriteLockGuard::Write);
}
