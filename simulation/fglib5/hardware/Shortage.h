/// \file
/// What the virtual machine can run short of on purpose.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

namespace simulation {

struct Shortage
{
    static constexpr auto PLENTY = std::numeric_limits<std::int64_t>::max();

    /// Image memory that all rings together may have, in bytes.
    static inline std::atomic<std::int64_t> imageMemory{PLENTY};
    /// The disk takes nothing more of what the runtime stores.
    static inline std::atomic<bool> diskFull{false};
};

} // namespace simulation
