// SPDX-License-Identifier: MIT
// The cost of the library's locks, compared with the primitives that they use.

#include "Ratios.h"

#include "platform/ReadWriteLock.h"
#include "platform/RecursiveMutex.h"
#include "platform/SpinLockVariableGuard.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <vector>

using namespace ovra::templates::platform;

namespace {

std::atomic<std::int32_t> lockWord{0};
std::atomic<std::uint32_t> ownerWord{0};

void spinGuard(benchmark::State& state)
{
    for (auto _ : state)
        const SpinLockVariableGuard guard(&lockWord, &ownerWord);
}

// The minimum of a spin lock with an owner.
void compareAndSwapAndStore(benchmark::State& state)
{
    for (auto _ : state) {
        std::int32_t expected = 0;
        while (!lockWord.compare_exchange_weak(expected, 1, std::memory_order_acquire))
            expected = 0;
        ownerWord.store(1, std::memory_order_relaxed);
        benchmark::ClobberMemory();
        ownerWord.store(0, std::memory_order_relaxed);
        lockWord.exchange(0, std::memory_order_release);
    }
}

void spinGuardEnteredAgain(benchmark::State& state)
{
    const SpinLockVariableGuard outer(&lockWord, &ownerWord);
    for (auto _ : state)
        const SpinLockVariableGuard guard(&lockWord, &ownerWord);
}

void recursiveMutex(benchmark::State& state)
{
    static RecursiveMutex mutex;
    for (auto _ : state)
        const RecursiveMutexGuard guard(&mutex);
}

void nativeRecursiveMutex(benchmark::State& state)
{
    static std::recursive_mutex mutex;
    for (auto _ : state)
        const std::lock_guard guard(mutex);
}

void twoAtomicOperations(benchmark::State& state)
{
    static std::atomic<std::uint32_t> word{0};
    for (auto _ : state) {
        word.fetch_add(1, std::memory_order_acquire);
        benchmark::ClobberMemory();
        word.fetch_sub(1, std::memory_order_release);
    }
}

template <int MODE>
void readWriteLock(benchmark::State& state)
{
    static ReadWriteLock lock;
    for (auto _ : state)
        const ReadWriteLockGuard guard(&lock, MODE);
}

struct OurLock
{
    ReadWriteLock lock;
    void lockShared() { lock.lockRead(); }
    void unlockShared() { lock.unlock(); }
    void lockExclusive() { lock.lockWrite(); }
    void unlockExclusive() { lock.unlock(); }
};

struct StandardLock
{
    std::shared_mutex lock;
    void lockShared() { lock.lock_shared(); }
    void unlockShared() { lock.unlock_shared(); }
    void lockExclusive() { lock.lock(); }
    void unlockExclusive() { lock.unlock(); }
};

/// The 99th percentile of a writer's times while a reader enters and leaves without a pause.
template <class Lock>
void writerUnderReader(benchmark::State& state)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::size_t TURNS = 20000;
    Lock lock;
    std::atomic<bool> running{true};
    std::atomic<int> reads{0};
    std::jthread reader([&] {
        while (running) {
            lock.lockShared();
            lock.unlockShared();
            ++reads;
        }
    });
    while (reads < 1000)
        std::this_thread::yield();
    std::vector<std::chrono::duration<double>> turns(TURNS);
    for (auto _ : state) {
        for (auto& turn : turns) {
            const auto begin = Clock::now();
            lock.lockExclusive();
            lock.unlockExclusive();
            turn = Clock::now() - begin;
        }
        const auto percentile = turns.begin() + TURNS * 99 / 100;
        std::nth_element(turns.begin(), percentile, turns.end());
        state.SetIterationTime(percentile->count());
    }
    running = false;
}

} // namespace

RATIO("spin guard with owner / swap and stores", spinGuard, compareAndSwapAndStore, 1.10);
RATIO("spin guard entered again / first entry", spinGuardEnteredAgain, spinGuard, 1.00);
RATIO("RecursiveMutex / native", recursiveMutex, nativeRecursiveMutex, 1.10);
RATIO("ReadWriteLock, read / two atomic operations", readWriteLock<ReadWriteLockGuard::Read>,
      twoAtomicOperations, 2.6);
RATIO("ReadWriteLock, write / two atomic operations", readWriteLock<ReadWriteLockGuard::Write>,
      twoAtomicOperations, 2.6);

// One iteration computes the percentile of many writes, so it reports its own time.
RATIO("writer's 99th percentile under a reader / shared_mutex", writerUnderReader<OurLock>,
      writerUnderReader<StandardLock>, 1.00, ovra::bench::Clock::Own);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
