// SPDX-License-Identifier: MIT
/// \file
/// DmaChannel: writes the images of its camera or its generator into a ring of buffers.
///
/// | state     | images                       | start       | stop       | blocked reader   |
/// |-----------|------------------------------|-------------|------------|------------------|
/// | stopped   | none                         | > acquiring | no effect  | FG_NOT_ACQUIRING |
/// | acquiring | while camera or generator on | refused     | > stopped  | waits            |
/// | finished  | all requested ones arrived   | > acquiring | > stopped  | FG_NOT_ACQUIRING |
/// | closed    | none, the board is freed     | refused     | no effect  | FG_NOT_ACQUIRING |
///
/// In a trigger mode the running source (camera or generator) gives one image for each trigger, but no faster
/// than its rate. A trigger is lost while no source is running.
///
/// A channel that is late catches up with at most ring size - 2 images (at least 1) before it waits for its
/// source again; older images are lost. With 3 or more buffers, the newest image stays intact for at least
/// almost two frame periods, and typically for (ring size) periods. An acquisition of no more images than the
/// ring has buffers catches up without that limit. Nothing else protects a reader, as with hardware: with a
/// source as fast as possible, or a ring of 1 or 2 buffers, the image can be overwritten while a client
/// copies it. Compare lastFrame() after the copy.
///
/// Any thread.
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
    /// When it returns, the channel writes no more images. Must not be called from the channel's own handler.
    void stop();
    /// Stops, and refuses to start again.
    void close();
    /// Like close, but does not wait; calls that wait for an image fail with FG_DEVICE_LOST.
    void lose();
    void setBoard(unsigned int index) { m_board = index; }
    bool acquiring() const;
    /// State of the channel's source, FG_SOURCE_...
    FgFrameIndex sourceState() const;

    /// Sets the camera's stream; null while the camera is stopped. \p midway: the camera started before the
    /// channel was connected to it.
    void setCameraStream(std::shared_ptr<const Stream> stream, bool midway = false);
    /// Sets the damage that the cable does to the camera's images; null: the cable is not loose.
    void setLooseLink(std::shared_ptr<const LooseLink> link);
    /// While the generator is on, the channel delivers its pattern instead of the camera's images.
    void setGenerator(bool on, Pattern pattern, double frameRate);
    /// Applies to later images; size and format do not change during an acquisition.
    void setProcessing(const Processing& processing);
    void setTrigger(const Trigger& trigger);
    /// Throws FG_NOT_ACQUIRING, and FG_NOT_WRITABLE in another trigger mode.
    void sendSoftwareTrigger(std::uint64_t count);

    FgFrameIndex lastFrame() const { return m_last; }
    /// Waits for image \p frame and returns the number of the newest image. Throws FG_TIMEOUT,
    /// FG_NOT_ACQUIRING.
    FgFrameIndex waitFor(FgFrameIndex frame, std::chrono::milliseconds timeout);
    FgFrameIndex lostFrames() const;
    /// The board's time stamp of an image. Throws FG_INVALID_ARGUMENT if the image is no longer in the ring.
    std::uint64_t timestampOf(FgFrameIndex frame) const;
    /// The ring of the current or the last acquisition; null if there is none.
    std::shared_ptr<BufferRing> ring() const;
    /// Drops the reference to a freed ring, so that its memory is released before the next acquisition.
    void forgetRing(const BufferRing& ring);

    /// Sets the callback for each image of the next acquisitions; a null callback removes it.
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
    Processing m_processing;                   ///< of the current acquisition
    std::shared_ptr<const FrameCycle> m_cycle; ///< for the current film and processing; null: not known yet
    std::shared_ptr<const Film> m_cycleFilm;
    bool m_generatorOn;
    Pattern m_pattern = Pattern::Ramp;
    double m_generatorRate;
    std::shared_ptr<const Stream> m_cameraStream;
    std::shared_ptr<const Stream> m_generatorStream;
    Clock::time_point m_joined; ///< start of the images from the current kind of source
    Trigger m_trigger;
    Clock::time_point m_triggerChanged;
    std::uint64_t m_softwareTriggers = 0; ///< triggers that have not given an image yet
    std::shared_ptr<const LooseLink> m_looseLink;
    std::uint64_t m_linkImages = 0; ///< images of the camera since the acquisition began
    std::atomic<unsigned int> m_board{0};
    std::optional<FgApcControl> m_apc;
    Clock::time_point m_lastApc;
};

} // namespace simulation
