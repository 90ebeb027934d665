// SPDX-License-Identifier: MIT
#include "platform/CriticalSection.h"

#include <ctime>
#include <sched.h>

namespace ovra::templates::platform {

namespace {

constexpr int SPINS = 64;
constexpr int YIELDS = 64;
constexpr long SLEEP_NANOSECONDS = 50'000;

/// The holder may need this processor and may have a lower priority than the waiting thread: in the end only
/// sleeping lets it continue.
void giveWay(int turn)
{
    if (turn < SPINS)
        return;
    if (turn < SPINS + YIELDS) {
        sched_yield();
        return;
    }
    const timespec moment{0, SLEEP_NANOSECONDS};
    nanosleep(&moment, nullptr);
}

} // namespace

void CriticalSection::enterContended()
{
    for (int turn = 0; m_taken.exchange(true, std::memory_order_acquire);) {
        while (m_taken.load(std::memory_order_relaxed))
            giveWay(turn < SPINS + YIELDS ? turn++ : turn);
    }
}

} // namespace ovra::templates::platform
