/// \file
/// A DMA channel: takes the images of its camera or its generator into a ring of buffers.
///
/// | state     | images                       | start       | stop       | blocked reader   |
/// |-----------|------------------------------|-------------|------------|------------------|
/// | stopped   | none                         | > acquiring | no effect  | FG_NOT_ACQUIRING |
/// | acquiring | while camera or generator on | refused     | > stopped  | waits            |
/// | finished  | all wanted ones are there    | > acquiring | > stopped  | FG_NOT_ACQUIRING |
/// | closed    | none, the board is freed     | refused     | no effect  | FG_NOT_ACQUIRING |
///
/// A channel that is late catches up with ring size - 2 images at most (at least 1) before it waits for its
/// source again; what is older is lost. With 3 buffers or more, a reader that takes the newest image has
/// nearly two of the source's periods at the worst, and ring size of them as a rule, until its buffer is
/// written again. An acquisition of no more images than the ring has buffers catches up without that limit.
/// Nothing protects a reader beyond that, as on hardware: with a source as fast as possible, or a ring
/// of 1 or 2 buffers, it can be overtaken while it copies. Whether it was is told by lastFrame() after the
/// copy.
///
/// Safe from any thread.
#pragma once

#include "Applet.h"
#include "BufferRing.h"
#include "EventHub.h"
#include "FrameCycle.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace simulation {

class DmaChannel
{
public:
    DmaChannel(const DmaDescription& description, EventHub& events);
    ~DmaChannel();
    DmaChannel(const DmaChannel&) = delete;
    DmaChannel& operator=(const DmaChannel&) = delete;

    const DmaDescription& description() const { return description_; }

    /// Starts to acquire \p frames images (FG_GRAB_INFINITE: until stopped) of this size, in pixels.
    void acquire(std::shared_ptr<BufferRing> ring, FgFrameIndex frames, int width, int height);
    /// No image is written any more when this returns. Not from the channel's own handler.
    void stop();
    /// Stops, and refuses to start again.
    void close();
    bool acquiring() const;

    /// What the camera sends; null while it does not acquire.
    void setCameraStream(std::shared_ptr<const Stream> stream);
    /// While the generator is on, the channel delivers its pattern in place of the camera's images.
    void setGenerator(bool on, double frameRate);

    FgFrameIndex lastFrame() const { return last_; }
    /// The newest image's number, once image \p frame is there. Throws FG_TIMEOUT, FG_NOT_ACQUIRING.
    FgFrameIndex waitFor(FgFrameIndex frame, std::chrono::milliseconds timeout);
    FgFrameIndex lostFrames() const;
    /// The ring of the present or the last acquisition; null where there is none.
    std::shared_ptr<BufferRing> ring() const;
    /// For a ring that is freed: its memory does not stay until the next acquisition.
    void forgetRing(const BufferRing& ring);

    /// Called for each image of the next acquisitions; a null callback ends that.
    void setApc(const FgApcControl& control);

    static std::int64_t acquiringChannels() noexcept;

private:
    using Clock = std::chrono::steady_clock;
    struct Pace;

    void finishThread();
    void spinFor(FgFrameIndex frame, std::unique_lock<std::mutex>& lock) const;
    void updateGeneratorStream();
    const std::shared_ptr<const Stream>& source() const;
    void run();
    void finish();
    bool imageDue(std::unique_lock<std::mutex>& lock, Pace& pace);
    void publish();
    void callApc(std::unique_lock<std::mutex>& lock, Clock::time_point now);

    const DmaDescription description_;
    EventHub& events_;
    const std::uint64_t startEvent_;
    const std::uint64_t lossEvent_;

    std::mutex control_; ///< one start or stop at a time; taken before mutex_
    std::thread thread_;
    std::atomic<std::thread::id> threadId_{};

    mutable std::mutex mutex_;
    std::condition_variable changed_;   ///< for the thread: stop, another source
    std::condition_variable delivered_; ///< for readers
    FgFrameIndex awaited_ = 0;          ///< the first image that a reader waits for
    bool stopping_ = false;
    bool running_ = false;
    bool closed_ = false;
    std::shared_ptr<BufferRing> ring_;
    FgFrameIndex wanted_ = 0;
    std::atomic<FgFrameIndex> last_{0}; ///< written under the lock
    FgFrameIndex lost_ = 0;
    int width_ = 0;
    int height_ = 0;
    bool generatorOn_;
    double generatorRate_;
    std::shared_ptr<const Stream> cameraStream_;
    std::shared_ptr<const Stream> generatorStream_;
    std::uint64_t generatorOrders_ = 0; ///< counts what can make a pattern being drawn the wrong one
    Clock::time_point joined_; ///< since when the channel has taken images of the present kind of source
    std::optional<FgApcControl> apc_;
    Clock::time_point lastApc_;
};

} // namespace simulation
