// SPDX-License-Identifier: MIT
/// \file
/// ImageBuffers: image buffers of the runtime, and their share of the memory budget.
#pragma once

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"

namespace ovra::display {

/// The client's three functions: bytes in use, limit in bytes, change of the bytes in use.
struct MemoryBudget
{
    FglibFrameBufferGroup::UsedMemory used;
    FglibFrameBufferGroup::TotalMemory total;
    FglibFrameBufferGroup::UpdateUsedMemory update;
};

/// What determines an image's size in memory: its size in pixels, and its format.
struct Geometry
{
    int width = 0;
    int height = 0;
    PixelFormat format = PixelFormat::Mono8;

    bool operator==(const Geometry&) const = default;
    std::size_t bytes() const { return bytesPerLine(format, width) * static_cast<std::size_t>(height); }
};

/// Construction allocates the buffers and counts their bytes as used; destruction releases both.
class ImageBuffers
{
public:
    /// Allocates as many of the \p wanted buffers as the budget allows, but at least one.
    /// \throws std::runtime_error  if the runtime provides none
    ImageBuffers(boost::shared_ptr<const reference::RuntimeEntries> runtime, Fg_Struct_s* handle,
                 Geometry geometry, unsigned int wanted, MemoryBudget budget);
    ~ImageBuffers();
    ImageBuffers(const ImageBuffers&) = delete;
    ImageBuffers& operator=(const ImageBuffers&) = delete;

    FgBufferRing_s* get() const { return m_ring; }
    unsigned int count() const { return m_count; }
    Geometry geometry() const { return m_geometry; }

private:
    long long bytes() const;

    const boost::shared_ptr<const reference::RuntimeEntries> m_runtime;
    Fg_Struct_s* const m_handle;
    const Geometry m_geometry;
    const MemoryBudget m_budget;
    unsigned int m_count = 0;
    FgBufferRing_s* m_ring = nullptr;
};

} // namespace ovra::display
