// SPDX-License-Identifier: MIT
/// \file
/// Shortage: shortages of the virtual machine that a rehearsal causes.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

namespace simulation {

struct Shortage
{
    static constexpr auto PLENTY = std::numeric_limits<std::int64_t>::max();

    /// Limit of the image memory of all rings together, in bytes.
    static inline std::atomic<std::int64_t> s_imageMemory{PLENTY};
    /// True: writing of the runtime's files fails.
    static inline std::atomic<bool> s_diskFull{false};
};

} // namespace simulation
