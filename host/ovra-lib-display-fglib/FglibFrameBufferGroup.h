/// \file
/// FglibFrameBufferGroup: the buffers of a DMA channel of the frame-grabber runtime.
#pragma once

#include "ovra-lib-display-fglib/Export.h"
#include "ovra-lib-display/FrameBufferGroup.h"

#include <boost/shared_ptr.hpp>

#include <memory>

struct Fg_Struct_s;

namespace ovra::display {

/// Allocates when it is made, and accounts for what it allocates with the three functions that it is given:
/// bytes in use, limit in bytes, and change of the bytes in use. Grants as many of the requested buffers as
/// the limit allows, but at least one. The functions are called one at a time for all groups, and must not
/// call a group. Images are copied out of the buffers: they stay valid until the next waitForImage. Once the
/// buffers are released the board handle is not used any more: a start throws std::runtime_error, other
/// requests change nothing. Safe from any thread, but for waitForImage, which is for one thread at a time.
class OVRA_DISPLAY_FGLIB_API FglibFrameBufferGroup : public FrameBufferGroup
{
public:
    using UsedMemory = unsigned long long (*)();
    using TotalMemory = unsigned long long (*)();
    using UpdateUsedMemory = void (*)(long long delta);

    /// 0 buffers, and more than an int holds, count as a request for 1. Throws std::runtime_error when the
    /// runtime gives no buffers.
    static boost::shared_ptr<FglibFrameBufferGroup> create(Fg_Struct_s* handle, int boardIndex,
                                                           unsigned int dmaIndex, unsigned int buffers,
                                                           UsedMemory usedMemory, TotalMemory totalMemory,
                                                           UpdateUsedMemory updateUsedMemory);
    ~FglibFrameBufferGroup() override;

    /// Below 1: std::invalid_argument, and neither the buffers nor the requested count change. Where the
    /// runtime gives no buffers: std::runtime_error, and there are as many as before; the request stands.
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
    /// As the runtime counts them.
    std::int64_t lostImages() const override;

    /// Longest wait for an image, from the next wait on; becomes the channel's FG_TIMEOUT. A start takes up
    /// what FG_TIMEOUT is then. A channel that waits for a trigger goes on waiting.
    void setTimeout(unsigned int seconds);

    /// Writes the channel's size in pixels. The buffers follow with the next
    /// notifyGeometryMayHaveChangedSlot or start, and at once while the channel acquires.
    void setWidth(int width);
    void setHeight(int height);

    /// Tells that the channel's geometry may be another than before. Called in pairs: with \p begin true
    /// before the group looks, which ends a running acquisition, and with false to take the geometry up:
    /// buffers are made anew when the size differs, and an acquisition that was running goes on. The numbers
    /// are hints and may be 0.
    void notifyGeometryMayHaveChangedSlot(int width, int height, bool begin);

private:
    FglibFrameBufferGroup();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::display
