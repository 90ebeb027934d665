#include "BufferRing.h"

#include "Failure.h"

#include <algorithm>
#include <atomic>

namespace simulation {

namespace {

constexpr FgFrameIndex mostBuffers = 1 << 20;

std::atomic<std::int64_t> rings{0};
std::atomic<std::int64_t> ringBytes{0};

std::size_t checkedCount(FgFrameIndex buffers)
{
    if (buffers < 1 || buffers > mostBuffers)
        throw Failure(FG_INVALID_ARGUMENT, "A ring has from 1 to " + std::to_string(mostBuffers) +
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
    memory_ = std::make_unique<std::uint8_t[]>(bytes); // written with zeros: no page is missing later
    bytes_ = bytes;
    const auto each = bytes / count;
    for (std::size_t i = 0; i < count; ++i)
        buffers_.emplace_back(memory_.get() + i * each, each);
    ++rings;
    ringBytes += static_cast<std::int64_t>(bytes);
}

BufferRing::BufferRing(FgFrameIndex buffers) : buffers_(checkedCount(buffers))
{
    ++rings;
}

BufferRing::~BufferRing()
{
    --rings;
    ringBytes -= static_cast<std::int64_t>(bytes_);
}

std::span<std::uint8_t>& BufferRing::place(FgFrameIndex index)
{
    if (index < 0 || index >= size())
        throw Failure(FG_INVALID_MEMORY, "The ring has no buffer " + std::to_string(index));
    if (memory_)
        throw Failure(FG_INVALID_MEMORY, "The ring has memory of its own");
    if (claimed_)
        throw Failure(FG_ACQUISITION_RUNNING, "Images are being acquired into the ring");
    return buffers_[static_cast<std::size_t>(index)];
}

void BufferRing::setBuffer(FgFrameIndex index, void* buffer, std::size_t bytes)
{
    if (buffer == nullptr || bytes == 0)
        throw Failure(FG_INVALID_ARGUMENT, "Fg_AddMem needs a buffer");
    const std::lock_guard lock(mutex_);
    place(index) = {static_cast<std::uint8_t*>(buffer), bytes};
}

void BufferRing::removeBuffer(FgFrameIndex index)
{
    const std::lock_guard lock(mutex_);
    place(index) = {};
}

std::span<std::uint8_t> BufferRing::bufferOf(FgFrameIndex frame) const
{
    return buffers_[static_cast<std::size_t>((frame - 1) % size())];
}

void BufferRing::claim(std::size_t imageBytes)
{
    const std::lock_guard lock(mutex_);
    if (claimed_)
        throw Failure(FG_ACQUISITION_RUNNING, "Another DMA channel acquires into this ring");
    for (const auto& buffer : buffers_)
        if (buffer.size() < imageBytes)
            throw Failure(FG_INVALID_MEMORY, "An image takes " + std::to_string(imageBytes) +
                                                 " bytes, a buffer of the ring has " +
                                                 std::to_string(buffer.size()));
    claimed_ = true;
}

void BufferRing::release() noexcept
{
    const std::lock_guard lock(mutex_);
    claimed_ = false;
}

bool BufferRing::claimed() const
{
    const std::lock_guard lock(mutex_);
    return claimed_;
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
