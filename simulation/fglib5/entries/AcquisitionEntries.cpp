// SPDX-License-Identifier: MIT
// Buffers and images.

#include "entries/Answers.h"
#include "entries/Entries.h"

namespace simulation::entries {

namespace {

std::chrono::milliseconds seconds(std::int64_t count)
{
    constexpr std::int64_t MAX_SECONDS =
        1'000'000'000; // about thirty years: adding it to a clock does not overflow
    return std::chrono::seconds(std::clamp<std::int64_t>(count, 0, MAX_SECONDS));
}

// Releases objects of an unplugged board like any others, and only then reports FG_DEVICE_LOST.
template <class Release>
int releaseOf(Fg_Struct* handle, Release release)
{
    const auto owner = Runtime::instance().held(handle);
    release(*owner);
    owner->requireThere();
    return FG_OK;
}

// If the client names a ring, it must be the channel's.
DmaChannel& channelWithRing(Grabber& grabber, unsigned int dma, FgBufferRing* ring)
{
    auto& channel = grabber.channel(dma);
    if (ring != nullptr && grabber.ring(ring) != channel.ring())
        throw Failure(FG_INVALID_MEMORY, "The DMA channel does not acquire into this ring");
    return channel;
}

FgBufferRing* requiredRing(FgBufferRing* ring)
{
    if (ring == nullptr)
        throw Failure(FG_INVALID_MEMORY, "The ring is missing");
    return ring;
}

} // namespace

FgBufferRing* Fg_AllocMemEx(Fg_Struct* grabber, std::size_t bytes, FgFrameIndex frames)
{
    return grabberOf(grabber)->addRing(std::make_shared<BufferRing>(bytes, frames));
}

int Fg_FreeMemEx(Fg_Struct* grabber, FgBufferRing* ring)
{
    return releaseOf(grabber, [&](Grabber& owner) { owner.freeRing(requiredRing(ring)); });
}

void* Fg_AllocMem(Fg_Struct* grabber, std::size_t bytes, FgFrameIndex frames, unsigned int dma)
{
    const auto owner = grabberOf(grabber);
    if (owner->ownRing(dma) != nullptr)
        throw Failure(FG_INVALID_MEMORY, "The DMA channel has buffers already");
    auto* ring = ::Fg_AllocMemEx(grabber, bytes, frames);
    if (ring == nullptr)
        failLikeInner();
    owner->setOwnRing(dma, ring);
    return owner->ring(ring)->bufferOf(1).data();
}

int Fg_FreeMem(Fg_Struct* grabber, unsigned int dma)
{
    return releaseOf(grabber, [&](Grabber& owner) { owner.freeRing(requiredRing(owner.ownRing(dma))); });
}

FgBufferRing* Fg_AllocMemHead(Fg_Struct* grabber, std::size_t, FgFrameIndex frames)
{
    return grabberOf(grabber)->addRing(std::make_shared<BufferRing>(frames));
}

int Fg_FreeMemHead(Fg_Struct* grabber, FgBufferRing* ring)
{
    return releaseOf(grabber, [&](Grabber& owner) { owner.freeRing(requiredRing(ring)); });
}

int Fg_AddMem(Fg_Struct* grabber, void* buffer, std::size_t bytes, FgFrameIndex index, FgBufferRing* ring)
{
    grabberOf(grabber)->ring(requiredRing(ring))->setBuffer(index, buffer, bytes);
    return static_cast<int>(index);
}

int Fg_DelMem(Fg_Struct* grabber, FgBufferRing* ring, FgFrameIndex index)
{
    return releaseOf(grabber, [&](Grabber& owner) { owner.ring(requiredRing(ring))->removeBuffer(index); });
}

int Fg_AcquireEx(Fg_Struct* grabber, unsigned int dma, FgFrameIndex frames, int mode, FgBufferRing* ring)
{
    if (mode != FG_ACQUIRE_STANDARD)
        throw Failure(FG_NOT_SIMULATED, "Only FG_ACQUIRE_STANDARD is simulated");
    grabberOf(grabber)->acquire(dma, frames, ring);
    return FG_OK;
}

int Fg_Acquire(Fg_Struct* grabber, unsigned int dma, FgFrameIndex frames)
{
    return ::Fg_AcquireEx(grabber, dma, frames, FG_ACQUIRE_STANDARD, nullptr);
}

int Fg_stopAcquireEx(Fg_Struct* grabber, unsigned int dma, FgBufferRing* ring, int)
{
    return releaseOf(grabber, [&](Grabber& owner) { channelWithRing(owner, dma, ring).stop(); });
}

int Fg_stopAcquire(Fg_Struct* grabber, unsigned int dma)
{
    return ::Fg_stopAcquireEx(grabber, dma, nullptr, 0);
}

FgFrameIndex Fg_getLastPicNumberEx(Fg_Struct* grabber, unsigned int dma, FgBufferRing* ring)
{
    const auto owner = grabberOf(grabber);
    return channelWithRing(*owner, dma, ring).lastFrame();
}

FgFrameIndex Fg_getLastPicNumber(Fg_Struct* grabber, unsigned int dma)
{
    return ::Fg_getLastPicNumberEx(grabber, dma, nullptr);
}

FgFrameIndex Fg_getLastPicNumberBlockingEx(Fg_Struct* grabber, FgFrameIndex frame, unsigned int dma,
                                           int timeoutSeconds, FgBufferRing* ring)
{
    const auto owner = grabberOf(grabber);
    return channelWithRing(*owner, dma, ring).waitFor(frame, seconds(timeoutSeconds));
}

FgFrameIndex Fg_getLastPicNumberBlocking(Fg_Struct* grabber, FgFrameIndex frame, unsigned int dma,
                                         int timeoutSeconds)
{
    return ::Fg_getLastPicNumberBlockingEx(grabber, frame, dma, timeoutSeconds, nullptr);
}

void* Fg_getImagePtrEx(Fg_Struct* grabber, FgFrameIndex frame, unsigned int dma, FgBufferRing* ring)
{
    const auto owner = grabberOf(grabber);
    auto& channel = owner->channel(dma);
    const auto buffers = ring == nullptr ? channel.ring() : owner->ring(ring);
    if (!buffers)
        throw Failure(FG_INVALID_MEMORY, "The DMA channel has no buffers");
    if (frame < 1)
        throw Failure(FG_INVALID_ARGUMENT, "Images are counted from 1");
    return buffers->bufferOf(frame).data();
}

void* Fg_getImagePtr(Fg_Struct* grabber, FgFrameIndex frame, unsigned int dma)
{
    return ::Fg_getImagePtrEx(grabber, frame, dma, nullptr);
}

FgFrameIndex Fg_getImageEx(Fg_Struct* grabber, int selector, FgFrameIndex frame, unsigned int dma,
                           unsigned int timeoutSeconds, FgBufferRing* ring)
{
    const auto owner = grabberOf(grabber);
    auto& channel = channelWithRing(*owner, dma, ring);
    if (selector == FG_IMAGE_LAST)
        return channel.lastFrame();
    if (selector != FG_IMAGE_NUMBER)
        throw Failure(FG_INVALID_ARGUMENT, "There is no image selector " + std::to_string(selector));
    return channel.waitFor(frame, seconds(timeoutSeconds));
}

FgFrameIndex Fg_getImage(Fg_Struct* grabber, int selector, FgFrameIndex frame, unsigned int dma,
                         unsigned int timeoutSeconds)
{
    return ::Fg_getImageEx(grabber, selector, frame, dma, timeoutSeconds, nullptr);
}

int Fg_getParameterEx(Fg_Struct* grabber, int parameter, void* value, unsigned int dma, FgBufferRing* ring,
                      FgFrameIndex frame)
{
    const auto owner = grabberOf(grabber);
    if (parameter != FG_TIMESTAMP_NS)
        throw Failure(FG_INVALID_PARAMETER, "An image has no parameter " + std::to_string(parameter));
    const auto timestamp = channelWithRing(*owner, dma, ring).timestampOf(frame);
    std::memcpy(checkedArgument(value, "value"), &timestamp, sizeof timestamp);
    return FG_OK;
}

int Fg_registerApcHandler(Fg_Struct* grabber, unsigned int dma, const FgApcControl* control, FgBufferRing*)
{
    const auto owner = grabberOf(grabber);
    owner->channel(dma).setApc(control == nullptr ? FgApcControl{} : *control);
    return FG_OK;
}

int Fg_sendSoftwareTrigger(Fg_Struct* grabber, unsigned int port)
{
    return ::Fg_sendSoftwareTriggerEx(grabber, port, 1);
}

int Fg_sendSoftwareTriggerEx(Fg_Struct* grabber, unsigned int port, unsigned int count)
{
    grabberOf(grabber)->sendSoftwareTrigger(port, count);
    return FG_OK;
}

FgFrameIndex Fg_getStatusEx(Fg_Struct* grabber, int selector, FgFrameIndex, unsigned int dma,
                            FgBufferRing* ring)
{
    const auto owner = grabberOf(grabber);
    auto& channel = channelWithRing(*owner, dma, ring);
    switch (selector) {
    case FG_STATUS_GRABBED_IMAGES:
        return channel.lastFrame();
    case FG_STATUS_LOST_IMAGES:
        return channel.lostFrames();
    case FG_STATUS_BUFFER_COUNT:
        return channel.ring() ? channel.ring()->size() : 0;
    case FG_STATUS_ACQUIRING:
        return channel.acquiring() ? 1 : 0;
    case FG_STATUS_SOURCE:
        return channel.sourceState();
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is no status " + std::to_string(selector));
    }
}

FgFrameIndex Fg_getStatus(Fg_Struct* grabber, int selector, FgFrameIndex argument, unsigned int dma)
{
    return ::Fg_getStatusEx(grabber, selector, argument, dma, nullptr);
}

} // namespace simulation::entries
