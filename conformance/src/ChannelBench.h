// SPDX-License-Identifier: MIT
/// \file
/// ChannelBench: a channel with a group of buffers and a scene, created as a load creates them.
#pragma once

#include "conformance/HostUnderTest.h"
#include "conformance/Test.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <memory>

namespace ovra::conformance {

/// The account that the groups of this process use through their three functions.
struct MemoryAccount
{
    static unsigned long long used();
    static unsigned long long limit();
    static void change(long long delta);

    static constexpr unsigned long long AMPLE = 1ULL << 30; // bytes
    static std::atomic<long long> s_bytes;
    static std::atomic<unsigned long long> s_limitBytes; ///< initially AMPLE
};

constexpr int WITHOUT_END = -1;

/// An application with an open channel. Image operations need startImages() first.
class ChannelBench
{
public:
    explicit ChannelBench(HostUnderTest& host);
    ~ChannelBench();
    ChannelBench(const ChannelBench&) = delete;
    ChannelBench& operator=(const ChannelBench&) = delete;

    boost::shared_ptr<display::FglibFrameBufferGroup> makeGroup(unsigned int buffers) const;

    /// Creates `group` with eight buffers, `scene` and its visualizer.
    void prepareScene();
    /// Like prepareScene(), and starts to grab without end.
    void startImages();

    int shown() const { return m_shown; }
    /// Waits for further images.
    void awaitImages(const char* when);
    void requireNoImages(const char* when);

    HostUnderTest& host;
    boost::shared_ptr<display::FglibFrameBufferGroup> group;
    boost::shared_ptr<display::DisplayScene> scene;
    std::function<void()> inImage; ///< the visualizer calls it; set it before images arrive

private:
    std::unique_ptr<ChannelUnderTest> m_channel;
    std::unique_ptr<display::DisplaySceneVisualizer> m_visualizer;
    std::atomic<int> m_shown{0};
};

} // namespace ovra::conformance
