// SPDX-License-Identifier: MIT
#include "hardware/BufferRing.h"

#include "Failure.h"
#include "hardware/Shortage.h"

#include <algorithm>
#include <atomic>

namespace simulation {

namespace {

constexpr FgFrameIndex MAX_BUFFERS = 1 << 20;

std::atomic<std::int64_t> rings{0};
std::atomic<std::int64_t> ringBytes{0};

std::size_t checkedCount(FgFrameIndex buffers)
{
    if (buffers < 1 || buffers > MAX_BUFFERS)
        throw Failure(FG_INVALID_ARGUMENT, "A ring has from 1 to " + std::to_string(MAX_BUFFERS) +
                                               " buffers, not " + std::to_string(buffers));
    return static_cast<std::size_t>(buffers);
}

} // namespace

BufferRing::BufferRing(std::size_t bytes, FgFrameIndex buffers)
{
    const auto count = checkedCount(buffers);
    if (bytes < count)
        throw Failure(FG_INVALID_ARGUMENT, "A ring of " + std::to_string(bytes) + " bytes cannot have " +
                                               std::to_string(count) + " buffers");
    if (ringBytes + static_cast<std::int64_t>(bytes) > Shortage::s_imageMemory)
        throw Failure(FG_NO_MEMORY,
                      "There is no image memory for a ring of " + std::to_string(bytes) + " bytes");
    m_memory = std::make_unique<std::uint8_t[]>(bytes); // zeroed, so that all pages are mapped
    m_bytes = bytes;
    const auto each = bytes / count;
    for (std::size_t i = 0; i < count; ++i)
        m_buffers.emplace_back(m_memory.get() + i * each, each);
    ++rings;
    ringBytes += static_cast<std::int64_t>(bytes);
}

BufferRing::BufferRing(FgFrameIndex buffers) : m_buffers(checkedCount(buffers))
{
    ++rings;
}

BufferRing::~BufferRing()
{
    --rings;
    ringBytes -= static_cast<std::int64_t>(m_bytes);
}

std::span<std::uint8_t>& BufferRing::place(FgFrameIndex index)
{
    if (index < 0 || index >= size())
        throw Failure(FG_INVALID_MEMORY, "The ring has no buffer " + std::to_string(index));
    if (m_memory)
        throw Failure(FG_INVALID_MEMORY, "The ring has memory of its own");
    if (m_claimed)
        throw Failure(FG_ACQUISITION_RUNNING, "Images are being acquired into the ring");
    return m_buffers[static_cast<std::size_t>(index)];
}

void BufferRing::setBuffer(FgFrameIndex index, void* buffer, std::size_t bytes)
{
    if (buffer == nullptr || bytes == 0)
        throw Failure(FG_INVALID_ARGUMENT, "Fg_AddMem needs a buffer");
    const std::lock_guard lock(m_mutex);
    place(index) = {static_cast<std::uint8_t*>(buffer), bytes};
}

void BufferRing::removeBuffer(FgFrameIndex index)
{
    const std::lock_guard lock(m_mutex);
    place(index) = {};
}

std::span<std::uint8_t> BufferRing::bufferOf(FgFrameIndex frame) const
{
    return m_buffers[static_cast<std::size_t>((frame - 1) % size())];
}

void BufferRing::claim(std::size_t imageBytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_claimed)
        throw Failure(FG_ACQUISITION_RUNNING, "Another DMA channel acquires into this ring");
    for (const auto& buffer : m_buffers)
        if (buffer.size() < imageBytes)
            throw Failure(FG_INVALID_MEMORY, "An image takes " + std::to_string(imageBytes) +
                                                 " bytes, a buffer of the ring has " +
                                                 std::to_string(buffer.size()));
    m_claimed = true;
}

void BufferRing::release() noexcept
{
    const std::lock_guard lock(m_mutex);
    m_claimed = false;
}

bool BufferRing::claimed() const
{
    const std::lock_guard lock(m_mutex);
    return m_claimed;
}

std::int64_t BufferRing::liveRings() noexcept
{
    return rings;
}

std::int64_t BufferRing::liveBytes() noexcept
{
    return ringBytes;
}

} // namespace simulation
