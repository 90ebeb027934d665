// SPDX-License-Identifier: MIT
#include "ChannelBench.h"

#include <string>

namespace ovra::conformance {

using display::DisplayScene;
using display::FglibFrameBufferGroup;

std::atomic<long long> MemoryAccount::s_bytes{0};
std::atomic<unsigned long long> MemoryAccount::s_limitBytes{AMPLE};

unsigned long long MemoryAccount::used()
{
    return static_cast<unsigned long long>(s_bytes.load());
}

unsigned long long MemoryAccount::limit()
{
    return s_limitBytes;
}

void MemoryAccount::change(long long delta)
{
    s_bytes += delta;
}

ChannelBench::ChannelBench(HostUnderTest& tested) : host(tested)
{
    host.startApplication();
    m_channel = host.openChannel();
}

ChannelBench::~ChannelBench()
{
    if (scene) {
        scene->stopGrabbing();
        scene->removeFrameBufferGroup(0);
        scene->setVisualizer(nullptr);
    }
    if (group)
        group->releaseBuffers();
}

boost::shared_ptr<FglibFrameBufferGroup> ChannelBench::makeGroup(unsigned int buffers) const
{
    return FglibFrameBufferGroup::create(m_channel->handle(), m_channel->board(), m_channel->dma(), buffers,
                                         MemoryAccount::used, MemoryAccount::limit, MemoryAccount::change);
}

void ChannelBench::prepareScene()
{
    constexpr unsigned int BUFFERS = 8;
    m_visualizer = host.makeVisualizer([this] {
        ++m_shown;
        if (inImage)
            inImage();
    });
    group = makeGroup(BUFFERS);
    scene = DisplayScene::create();
    scene->addFrameBufferGroup(0, group);
    scene->setVisualizer(m_visualizer.get());
}

void ChannelBench::startImages()
{
    prepareScene();
    scene->startGrabbing(WITHOUT_END);
}

void ChannelBench::awaitImages(const char* when)
{
    constexpr int SOME = 3;
    const int before = m_shown;
    await(
        host, [&] { return m_shown >= before + SOME; }, std::string("images ") + when);
}

void ChannelBench::requireNoImages(const char* when)
{
    const int before = m_shown;
    stays(
        host, [&] { return m_shown == before; }, std::string("no image ") + when);
}

} // namespace ovra::conformance
