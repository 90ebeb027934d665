// SPDX-License-Identifier: MIT
/// \file
/// BufferRing: a ring of image buffers.
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
    /// A ring with its own memory; touches all of its pages. Throws FG_NO_MEMORY.
    BufferRing(std::size_t bytes, FgFrameIndex buffers);
    /// A ring for \p buffers buffers that the client adds.
    explicit BufferRing(FgFrameIndex buffers);
    ~BufferRing();
    BufferRing(const BufferRing&) = delete;
    BufferRing& operator=(const BufferRing&) = delete;

    /// Throws FG_ACQUISITION_RUNNING while an acquisition uses the ring.
    void setBuffer(FgFrameIndex index, void* buffer, std::size_t bytes);
    void removeBuffer(FgFrameIndex index);

    FgFrameIndex size() const noexcept { return static_cast<FgFrameIndex>(m_buffers.size()); }
    /// Buffer of the image with number \p frame, counted from 1.
    std::span<std::uint8_t> bufferOf(FgFrameIndex frame) const;

    /// Claims the ring for an acquisition of images of this size. Throws FG_ACQUISITION_RUNNING if another
    /// acquisition uses it, FG_INVALID_MEMORY if a buffer is missing or too small.
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
