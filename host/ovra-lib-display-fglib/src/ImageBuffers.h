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

/// What an image takes: its size in pixels, and what a pixel is.
struct Geometry
{
    int width = 0;
    int height = 0;
    PixelFormat format = PixelFormat::Mono8;

    bool operator==(const Geometry&) const = default;
    std::size_t bytes() const { return bytesPerLine(format, width) * static_cast<std::size_t>(height); }
};

/// Takes buffers when it is made, and gives them and their bytes back when it is destroyed.
class ImageBuffers
{
public:
    /// As many of the \p wanted buffers as the budget allows, but at least one. Throws std::runtime_error
    /// when the runtime gives none.
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
