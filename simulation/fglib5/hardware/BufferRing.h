/// \file
/// Rings of image buffers.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace simulation {

class BufferRing
{
public:
    /// A ring with memory of its own, all pages of it touched. Throws FG_NO_MEMORY.
    BufferRing(std::size_t bytes, FgFrameIndex buffers);
    /// A ring of \p buffers places for a client's buffers.
    explicit BufferRing(FgFrameIndex buffers);
    ~BufferRing();
    BufferRing(const BufferRing&) = delete;
    BufferRing& operator=(const BufferRing&) = delete;

    /// Changes while images are written into the ring throw FG_ACQUISITION_RUNNING.
    void setBuffer(FgFrameIndex index, void* buffer, std::size_t bytes);
    void removeBuffer(FgFrameIndex index);

    FgFrameIndex size() const noexcept { return static_cast<FgFrameIndex>(m_buffers.size()); }
    /// Buffer of an image, counted from 1.
    std::span<std::uint8_t> bufferOf(FgFrameIndex frame) const;

    /// Claims the ring for an acquisition of images of this size. Throws FG_ACQUISITION_RUNNING where another
    /// one has it, FG_INVALID_MEMORY where a buffer is missing or too small.
    void claim(std::size_t imageBytes);
    void release() noexcept;
    bool claimed() const;

    static std::int64_t liveRings() noexcept;
    static std::int64_t liveBytes() noexcept;

private:
    std::span<std::uint8_t>& place(FgFrameIndex index);

    std::unique_ptr<std::uint8_t[]> m_memory;
    std::size_t m_bytes = 0;
    std::vector<std::span<std::uint8_t>> m_buffers;
    mutable std::mutex m_mutex;
    bool m_claimed = false;
};

} // namespace simulation
