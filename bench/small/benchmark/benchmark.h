// SPDX-License-Identifier: MIT
/// \file
/// The parts of Google Benchmark that the measurements use, for platforms without a package of it.
#pragma once

#include <chrono>
#include <cstdint>

namespace benchmark {

/// One run. `for (auto _ : state)` repeats for all iterations of the run. The clock measures the loop, unless
/// SetIterationTime reports the times.
class State
{
    using Clock = std::chrono::steady_clock;

public:
    explicit State(std::int64_t iterations) : m_left(iterations) {}

    struct [[maybe_unused]] Turn
    {};

    class Iterator
    {
    public:
        explicit Iterator(State& state) : m_state(state), m_left(state.m_left) {}
        Turn operator*() const { return {}; }
        void operator++() { --m_left; }
        bool operator!=(int)
        {
            if (m_left != 0) [[likely]]
                return true;
            m_state.m_wall = Clock::now() - m_state.m_begin;
            return false;
        }

    private:
        State& m_state;
        std::int64_t m_left;
    };

    Iterator begin()
    {
        m_begin = Clock::now();
        return Iterator(*this);
    }
    int end() const { return 0; }

    void SetIterationTime(double seconds) { m_reported += seconds; }
    double seconds() const { return m_reported > 0 ? m_reported : m_wall.count(); }

private:
    std::int64_t m_left;
    Clock::time_point m_begin;
    std::chrono::duration<double> m_wall{0};
    double m_reported = 0;
};

/// Prevents the compiler from optimising the value away.
template <class Value>
void DoNotOptimize(const Value& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

inline void ClobberMemory()
{
    asm volatile("" : : : "memory");
}

} // namespace benchmark
