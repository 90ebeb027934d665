// SPDX-License-Identifier: MIT
/// \file
/// AcquisitionTest's fixture: a board with an applet that acquires images.
#pragma once

#include "Fixture.h"

#include <chrono>
#include <thread>

namespace simulation::tests {

using Clock = std::chrono::steady_clock;

class Acquisition : public SimulationTest
{
protected:
    static constexpr int GENEROUS = 60; ///< seconds; a limit, not a wait

    explicit Acquisition(const std::string& machine = SMALL_MACHINE, const std::string& applet = SMALL_APPLET)
    {
        EXPECT_EQ(useMachine(machine), FG_OK) << lastLine();
        m_grabber = open(applet);
    }

    ~Acquisition() override
    {
        runtime.FgCam_stop(0, 0);
        runtime.FgCam_stop(0, 1);
    }

    FgBufferRing* ring(FgFrameIndex buffers, std::size_t each = 40 * 30)
    {
        return runtime.Fg_AllocMemEx(m_grabber, each * static_cast<std::size_t>(buffers), buffers);
    }

    int start(unsigned int dma, FgBufferRing* ring, FgFrameIndex frames = FG_GRAB_INFINITE)
    {
        return runtime.Fg_AcquireEx(m_grabber, dma, frames, FG_ACQUIRE_STANDARD, ring);
    }

    FgFrameIndex waitFor(FgFrameIndex frame, unsigned int dma, FgBufferRing* ring)
    {
        return runtime.Fg_getLastPicNumberBlockingEx(m_grabber, frame, dma, GENEROUS, ring);
    }

    std::vector<std::uint8_t> image(FgFrameIndex frame, unsigned int dma, FgBufferRing* ring,
                                    std::size_t bytes)
    {
        const auto* pixels =
            static_cast<std::uint8_t*>(runtime.Fg_getImagePtrEx(m_grabber, frame, dma, ring));
        return {pixels, pixels + bytes};
    }

    void set(int parameter, unsigned int dma, double value)
    {
        EXPECT_EQ(runtime.Fg_setParameterWithType(m_grabber, parameter, &value, dma, FG_TYPE_DOUBLE), FG_OK)
            << lastLine();
    }

    /// Waits while the other channel's generator delivers for 100 ms; a camera would send twenty images in
    /// that time.
    void letTimePass()
    {
        auto* other = ring(2);
        set(FG_GEN_ENABLE, 1, 1);
        ASSERT_EQ(start(1, other, 11), FG_OK) << lastLine();
        ASSERT_EQ(waitFor(11, 1, other), 11) << lastLine();
        runtime.Fg_FreeMemEx(m_grabber, other);
    }

    FgFrameIndex status(int selector) { return runtime.Fg_getStatus(m_grabber, selector, 0, 0); }

    /// Waits until the \p nth call of Fg_getLastPicNumberBlockingEx in the test has begun.
    void untilBlocked(std::int64_t nth)
    {
        while (runtime.FgSim_callCount("Fg_getLastPicNumberBlockingEx") < nth)
            std::this_thread::yield();
    }

    std::uint64_t event(const char* name) { return runtime.Fg_getEventMask(m_grabber, name); }

    Fg_Struct* m_grabber;
};

} // namespace simulation::tests
