// SPDX-License-Identifier: MIT
/// \file
/// FglibFrameBufferGroup: the image buffers of one DMA channel of the frame-grabber runtime.
#pragma once

#include "ovra-lib-display-fglib/Export.h"
#include "ovra-lib-display/FrameBufferGroup.h"

#include <boost/shared_ptr.hpp>

#include <memory>

struct Fg_Struct_s;

namespace ovra::display {

/// A load creates one for each DMA channel and adds it to the channel's display scene, which calls
/// startAcquisition and waitForImage. Construction allocates the buffers. All groups share one account of DMA
/// memory, which they read and update through the three functions that create() gets. A group gets as many of
/// the requested buffers as the limit allows, but at least one. waitForImage copies the image out of its
/// buffer; the copy is valid until the next waitForImage.
///
/// After releaseBuffers() the group does not use the board handle: startAcquisition throws
/// std::runtime_error, other requests have no effect.
///
/// Any thread may call all functions, but only one thread at a time waitForImage.
class OVRA_DISPLAY_FGLIB_API FglibFrameBufferGroup : public FrameBufferGroup
{
public:
    // Called under one lock for all groups: they must not call a group.
    using UsedMemory = unsigned long long (*)();        ///< bytes in use
    using TotalMemory = unsigned long long (*)();       ///< limit in bytes
    using UpdateUsedMemory = void (*)(long long delta); ///< adds \p delta bytes to those in use

    /// Requests \p buffers buffers for a channel of the board with \p handle, which must stay valid until
    /// releaseBuffers(). A number of 0, or one that does not fit an int, counts as 1.
    /// \throws std::runtime_error  if the runtime provides no buffers
    [[nodiscard]] static boost::shared_ptr<FglibFrameBufferGroup>
    create(Fg_Struct_s* handle, int boardIndex, unsigned int dmaIndex, unsigned int buffers,
           UsedMemory usedMemory, TotalMemory totalMemory, UpdateUsedMemory updateUsedMemory);
    ~FglibFrameBufferGroup() override;

    /// \throws std::invalid_argument  if \p buffers is below 1; nothing changes
    /// \throws std::runtime_error  if the runtime provides no buffers; the number of buffers stays, the
    ///     requested number is the new one
    void setBufferCount(int buffers) override;
    unsigned int requestedBufferCount() const override;
    unsigned int bufferCount() const override;
    void releaseBuffers() override;

    int width() const override;
    int height() const override;
    void startAcquisition(int images) override;
    void stopAcquisition() override;
    bool waitForImage(std::int64_t after, Image& image) override;
    unsigned int dmaIndex() const override;
    reference::AcquisitionStatus acquisitionStatus() const override;
    /// The runtime's count.
    std::int64_t lostImages() const override;

    /// Sets the longest wait for an image, which is also the channel's parameter FG_TIMEOUT. It applies from
    /// the next wait on. A start reads FG_TIMEOUT again. A channel that waits for a trigger does not time
    /// out. If \p seconds is 0 or does not fit the runtime, the timeout stays and the log says so.
    void setTimeout(unsigned int seconds);

    /// Writes the channel's size in pixels. During an acquisition the buffers are reallocated at once, else
    /// with the next notifyGeometryMayHaveChangedSlot or start.
    void setWidth(int width);
    void setHeight(int height);

    /// Announces that the channel's geometry may change or may have changed. Call it twice: with \p begin
    /// true, which pauses a running acquisition; then with false, which reads the geometry, reallocates the
    /// buffers if the size differs, and resumes the acquisition. \p width and \p height are hints and may be
    /// 0.
    void notifyGeometryMayHaveChangedSlot(int width, int height, bool begin);

private:
    FglibFrameBufferGroup();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::display
