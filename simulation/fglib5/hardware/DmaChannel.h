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
/// With a trigger the images of a camera or generator that is on come one for each trigger, but not faster
/// than that source could send them; triggers that find no source are lost.
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

#include "descriptions/Applet.h"
#include "hardware/BufferRing.h"
#include "hardware/EventHub.h"
#include "hardware/FrameCycle.h"
#include "hardware/LooseLink.h"
#include "hardware/Stream.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace simulation {

class DmaChannel
{
public:
    DmaChannel(const DmaDescription& description, EventHub& events);
    ~DmaChannel();
    DmaChannel(const DmaChannel&) = delete;
    DmaChannel& operator=(const DmaChannel&) = delete;

    const DmaDescription& description() const { return m_description; }

    /// Starts to acquire \p frames images (FG_GRAB_INFINITE: until stopped).
    void acquire(std::shared_ptr<BufferRing> ring, FgFrameIndex frames, const Processing& processing);
    /// No image is written any more when this returns. Not from the channel's own handler.
    void stop();
    /// Stops, and refuses to start again.
    void close();
    /// As close, but does not wait, and whoever waits for an image is woken with FG_DEVICE_LOST.
    void lose();
    void setBoard(unsigned int index) { m_board = index; }
    bool acquiring() const;
    /// FG_SOURCE_...: what the channel's images come from does.
    FgFrameIndex sourceState() const;

    /// What the camera sends; null while it does not acquire.
    /// \p midway: it has been sending for a while, which this channel did not see.
    void setCameraStream(std::shared_ptr<const Stream> stream, bool midway = false);
    /// What the cable does to the camera's images; null for a cable that is fast.
    void setLooseLink(std::shared_ptr<const LooseLink> link);
    /// While the generator is on, the channel delivers its pattern in place of the camera's images.
    void setGenerator(bool on, Pattern pattern, double frameRate);
    /// Of the images to come; size and format stay as they are while the channel acquires.
    void setProcessing(const Processing& processing);
    void setTrigger(const Trigger& trigger);
    /// Throws FG_NOT_ACQUIRING, and FG_NOT_WRITABLE in another trigger mode.
    void sendSoftwareTrigger(std::uint64_t count);

    FgFrameIndex lastFrame() const { return m_last; }
    /// The newest image's number, once image \p frame is there. Throws FG_TIMEOUT, FG_NOT_ACQUIRING.
    FgFrameIndex waitFor(FgFrameIndex frame, std::chrono::milliseconds timeout);
    FgFrameIndex lostFrames() const;
    /// When the board took an image that is still in the ring, by its clock. Throws FG_INVALID_ARGUMENT.
    std::uint64_t timestampOf(FgFrameIndex frame) const;
    /// The ring of the present or the last acquisition; null where there is none.
    std::shared_ptr<BufferRing> ring() const;
    /// For a ring that is freed: its memory does not stay until the next acquisition.
    void forgetRing(const BufferRing& ring);

    /// Called for each image of the next acquisitions; a null callback ends that.
    void setApc(const FgApcControl& control);

    static std::int64_t acquiringChannels() noexcept;

private:
    using Clock = std::chrono::steady_clock;
    class Pace;

    void finishThread();
    void spinFor(FgFrameIndex frame, std::unique_lock<std::mutex>& lock) const;
    void updateGeneratorStream(bool goesOn);
    const std::shared_ptr<const Stream>& source() const;
    void run();
    void finish();
    bool imageDue(std::unique_lock<std::mutex>& lock, Pace& pace);
    bool triggeredImageDue(std::unique_lock<std::mutex>& lock, Pace& pace);
    const std::shared_ptr<const FrameCycle>& cycleFor(const Stream& stream);
    std::optional<LooseLink::Damage> damageOfNext();
    void loseImage(Pace& pace, std::unique_lock<std::mutex>& lock);
    void publish(std::uint64_t taken);
    void tellOfImage(std::unique_lock<std::mutex>& lock) const;
    void callApc(std::unique_lock<std::mutex>& lock, Clock::time_point now);

    const DmaDescription m_description;
    EventHub& m_events;
    const std::uint64_t m_startEvent;
    const std::uint64_t m_lossEvent;

    std::mutex m_control; ///< one start or stop at a time; taken before m_mutex
    std::thread m_thread;
    std::atomic<std::thread::id> m_threadId{};

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;   ///< for the thread: stop, another source
    std::condition_variable m_delivered; ///< for readers
    FgFrameIndex m_awaited = 0;          ///< the first image that a reader waits for
    bool m_stopping = false;
    bool m_running = false;
    bool m_closed = false;
    bool m_gone = false; ///< the board was unplugged
    std::shared_ptr<BufferRing> m_ring;
    std::vector<std::uint64_t> m_timestamps; ///< one for each buffer of the ring
    FgFrameIndex m_wanted = 0;
    std::atomic<FgFrameIndex> m_last{0}; ///< written under the lock
    FgFrameIndex m_lost = 0;
    std::optional<Processing> m_processing;
    std::shared_ptr<const FrameCycle>
        m_cycle; ///< of the film and the processing at present; null: not known yet
    std::shared_ptr<const Film> m_cycleFilm;
    bool m_generatorOn;
    Pattern m_pattern = Pattern::Ramp;
    double m_generatorRate;
    std::shared_ptr<const Stream> m_cameraStream;
    std::shared_ptr<const Stream> m_generatorStream;
    Clock::time_point m_joined; ///< since when the channel has taken images of the present kind of source
    Trigger m_trigger;
    Clock::time_point m_triggerChanged;
    std::uint64_t m_softwareTriggers = 0; ///< that no image has come for yet
    std::shared_ptr<const LooseLink> m_looseLink;
    std::uint64_t m_linkImages = 0; ///< of the camera since the acquisition began
    std::atomic<unsigned int> m_board{0};
    std::optional<FgApcControl> m_apc;
    Clock::time_point m_lastApc;
};

} // namespace simulation
