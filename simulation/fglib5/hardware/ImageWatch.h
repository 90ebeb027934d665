// SPDX-License-Identifier: MIT
/// \file
/// ImageWatch: notifies the rehearsal of the image that it waits for.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <atomic>

namespace simulation {

/// Costs a channel one load per image while no rehearsal waits.
struct ImageWatch
{
    using Arrived = void (*)(unsigned int board, int dma, FgFrameIndex frame);

    /// Called on the channel's thread, without its lock, after each image; null: no rehearsal waits.
    static inline std::atomic<Arrived> s_arrived{nullptr};
};

} // namespace simulation
