#include "DmaChannel.h"

#include "DeviceWrite.h"
#include "Failure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace simulation {

namespace {

// A board has memory of its own: a channel that is late catches up with this much of its source.
constexpr std::chrono::milliseconds boardMemory{500};

// With this many images at most, one right after the other, does a channel catch up. The newest image that a
// reader has been given is then still whole, and the source goes on at its own pace before its buffer is due.
FgFrameIndex longestCatchUp(const BufferRing& ring, FgFrameIndex wanted)
{
    if (wanted != FG_GRAB_INFINITE && wanted <= ring.size())
        return std::numeric_limits<FgFrameIndex>::max(); // no buffer is written twice
    return std::max<FgFrameIndex>(ring.size() - 2, 1);
}

constexpr std::chrono::microseconds longestSpin{50};

constexpr auto nobodyWaits = std::numeric_limits<FgFrameIndex>::max();

std::atomic<std::int64_t> acquiringNow{0};

std::string eventName(const char* kind, int dma)
{
    return std::string(kind) + std::to_string(dma);
}

} // namespace

// When the next image of the present source is due.
struct DmaChannel::Pace
{
    std::shared_ptr<const Stream> stream;
    std::uint64_t next = 0;    ///< number of that image, from 0 at the source's start
    std::uint64_t longest;     ///< images that may be written without waiting in between
    std::uint64_t written = 0; ///< images since the channel last waited for its source

    explicit Pace(FgFrameIndex longestCatchUp) : longest(static_cast<std::uint64_t>(longestCatchUp)) {}

    /// The channel has had this source in view since \p joined: what went by before is not for it.
    void follow(const std::shared_ptr<const Stream>& source, Clock::time_point joined)
    {
        stream = source;
        next = 0;
        if (!stream || stream->frameRate == 0 || joined <= stream->start)
            return;
        const std::chrono::duration<double> age = joined - stream->start;
        next = static_cast<std::uint64_t>(std::ceil(age.count() * stream->frameRate));
    }

    Clock::time_point due() const
    {
        const std::chrono::duration<double> since(static_cast<double>(next) / stream->frameRate);
        return stream->start + std::chrono::duration_cast<Clock::duration>(since);
    }

    // Leaves out the oldest of the images that are due, where they are more than the board's memory holds or
    // than may still be written without waiting; returns how many that were. The image that is next then may
    // not be due yet.
    FgFrameIndex skipLost(Clock::time_point now)
    {
        const std::chrono::duration<double> late = now - due(), memory = boardMemory;
        const auto waiting = static_cast<std::uint64_t>(late.count() * stream->frameRate) + 1;
        const auto held =
            std::max(static_cast<std::uint64_t>(memory.count() * stream->frameRate), std::uint64_t{1});
        const auto kept = std::min(held, longest - written);
        if (waiting <= kept)
            return 0;
        const auto lost = waiting - kept;
        next += lost;
        return static_cast<FgFrameIndex>(lost);
    }
};

DmaChannel::DmaChannel(const DmaDescription& description, EventHub& events)
    : description_(description),
      events_(events),
      startEvent_(events.maskOf(eventName("FG_START_OF_FRAME_DMA", description.index))),
      lossEvent_(events.maskOf(eventName("FG_IMAGES_LOST_DMA", description.index))),
      generatorOn_(description.generator && description.generator->enabled),
      generatorRate_(description.generator ? description.generator->frameRate : 0)
{}

DmaChannel::~DmaChannel()
{
    finishThread();
}

void DmaChannel::acquire(std::shared_ptr<BufferRing> ring, FgFrameIndex frames, int width, int height)
{
    const std::lock_guard control(control_);
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            throw Failure(FG_INVALID_HANDLE, "The board is being freed");
        if (running_)
            throw Failure(FG_ACQUISITION_RUNNING,
                          "DMA channel " + std::to_string(description_.index) + " acquires already");
    }
    finishThread(); // of an acquisition that has got all its images
    ring->claim(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    {
        const std::lock_guard lock(mutex_);
        ring_ = std::move(ring);
        wanted_ = frames;
        last_ = 0;
        lost_ = 0;
        width_ = width;
        height_ = height;
        stopping_ = false;
        running_ = true;
        joined_ = Clock::now();
    }
    ++acquiringNow;
    try {
        updateGeneratorStream();
        thread_ = std::thread([this] { run(); });
    } catch (...) {
        const std::lock_guard lock(mutex_);
        finish();
        throw;
    }
}

void DmaChannel::stop()
{
    if (threadId_.load() == std::this_thread::get_id())
        throw Failure(FG_INVALID_ARGUMENT, "An acquisition cannot be stopped from within its own handler");
    const std::lock_guard control(control_);
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    delivered_.notify_all();
    finishThread();
}

void DmaChannel::close()
{
    if (threadId_.load() == std::this_thread::get_id())
        throw Failure(FG_INVALID_ARGUMENT, "A board cannot be freed from within an acquisition's handler");
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    stop();
}

void DmaChannel::finishThread()
{
    if (!thread_.joinable())
        return;
    thread_.join();
    threadId_ = std::thread::id();
}

bool DmaChannel::acquiring() const
{
    const std::lock_guard lock(mutex_);
    return running_;
}

void DmaChannel::setCameraStream(std::shared_ptr<const Stream> stream)
{
    {
        const std::lock_guard lock(mutex_);
        cameraStream_ = std::move(stream);
    }
    changed_.notify_all();
}

void DmaChannel::setGenerator(bool on, double frameRate)
{
    {
        const std::lock_guard lock(mutex_);
        if (generatorOn_ == on && generatorRate_ == frameRate)
            return;
        generatorOn_ = on;
        generatorRate_ = frameRate;
        joined_ = Clock::now();
    }
    updateGeneratorStream();
}

// The pattern is drawn outside the lock: readers and the acquisition thread go on meanwhile.
void DmaChannel::updateGeneratorStream()
{
    std::unique_lock lock(mutex_);
    generatorStream_.reset();
    const auto order = ++generatorOrders_;
    const bool needed = generatorOn_ && running_;
    const int width = width_, height = height_;
    const double rate = generatorRate_;
    lock.unlock();
    if (needed) {
        auto cycle = FrameCycle::ofPattern(description_.generator->pattern, width, height);
        auto stream = std::make_shared<const Stream>(std::move(cycle), rate, Clock::now());
        lock.lock();
        if (order == generatorOrders_) // else it was drawn for a size or a rate of the past
            generatorStream_ = std::move(stream);
        lock.unlock();
    }
    changed_.notify_all();
}

const std::shared_ptr<const Stream>& DmaChannel::source() const
{
    return generatorOn_ ? generatorStream_ : cameraStream_;
}

// A source that is as fast as possible has its next image ready before a reader would have fallen asleep, and
// to wake one would cost the acquisition more than a small image does. Where all cores are busy, others go
// first. The images of any other source are worth a sleep.
void DmaChannel::spinFor(FgFrameIndex frame, std::unique_lock<std::mutex>& lock) const
{
    if (last_ >= frame || !running_ || !source() || source()->frameRate != 0)
        return;
    lock.unlock();
    const auto end = Clock::now() + longestSpin;
    while (last_ < frame && Clock::now() < end)
        std::this_thread::yield();
    lock.lock();
}

FgFrameIndex DmaChannel::waitFor(FgFrameIndex frame, std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    std::unique_lock lock(mutex_);
    spinFor(frame, lock);
    while (last_ < frame && running_ && !stopping_) {
        awaited_ = std::min(awaited_, frame); // whoever wakes the readers forgets what they wait for
        if (delivered_.wait_until(lock, deadline) == std::cv_status::timeout)
            break;
    }
    if (running_ && stopping_)
        throw Failure(FG_NOT_ACQUIRING, "The acquisition was stopped before image " + std::to_string(frame));
    if (last_ >= frame)
        return last_;
    if (!running_)
        throw Failure(FG_NOT_ACQUIRING,
                      "DMA channel " + std::to_string(description_.index) + " does not acquire");
    throw Failure(FG_TIMEOUT,
                  "No image " + std::to_string(frame) + " within " + std::to_string(timeout.count()) + " ms");
}

FgFrameIndex DmaChannel::lostFrames() const
{
    const std::lock_guard lock(mutex_);
    return lost_;
}

std::shared_ptr<BufferRing> DmaChannel::ring() const
{
    const std::lock_guard lock(mutex_);
    return ring_;
}

void DmaChannel::forgetRing(const BufferRing& ring)
{
    const std::lock_guard lock(mutex_);
    if (!running_ && ring_.get() == &ring)
        ring_.reset();
}

void DmaChannel::setApc(const FgApcControl& control)
{
    const std::lock_guard lock(mutex_);
    if (running_)
        throw Failure(FG_ACQUISITION_RUNNING, "A handler is registered before the acquisition starts");
    apc_.reset();
    if (control.callback != nullptr)
        apc_ = control;
}

std::int64_t DmaChannel::acquiringChannels() noexcept
{
    return acquiringNow;
}

void DmaChannel::run()
{
    threadId_ = std::this_thread::get_id();
    std::unique_lock lock(mutex_);
    Pace pace(longestCatchUp(*ring_, wanted_));
    lastApc_ = Clock::now();
    const auto bytes = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    while (!stopping_ && last_ != wanted_) {
        if (!imageDue(lock, pace))
            continue;
        const auto target = ring_->bufferOf(last_ + 1).first(bytes);
        lock.unlock();
        events_.raise(startEvent_, last_ + 1); // only this thread writes last_
        {
            const DeviceWrite scope;
            pace.stream->images->write(pace.next++, target);
        }
        lock.lock();
        const auto now = Clock::now();
        publish();
        callApc(lock, now);
    }
    finish(); // still under the lock: who has seen the last image finds the ring free
}

void DmaChannel::finish()
{
    running_ = false;
    ring_->release();
    --acquiringNow;
    delivered_.notify_all();
}

// Waits until the next image is due. False when something changed on the way and has to be looked at first.
bool DmaChannel::imageDue(std::unique_lock<std::mutex>& lock, Pace& pace)
{
    if (pace.stream != source())
        pace.follow(source(), joined_);
    if (!pace.stream) {
        pace.written = 0;
        changed_.wait(lock);
        return false;
    }
    if (pace.stream->frameRate == 0)
        return true;
    const auto now = Clock::now();
    if (now < pace.due()) {
        pace.written = 0;
        changed_.wait_until(lock, pace.due());
        return false;
    }
    const auto lost = pace.skipLost(now);
    lost_ += lost;
    if (lost > 0)
        events_.raise(lossEvent_, last_);
    if (pace.written == pace.longest)
        return false;
    ++pace.written;
    return true;
}

void DmaChannel::publish()
{
    // A reader that waits for a later image costs nothing until then.
    if (++last_ < awaited_)
        return;
    awaited_ = nobodyWaits;
    delivered_.notify_all();
}

void DmaChannel::callApc(std::unique_lock<std::mutex>& lock, Clock::time_point now)
{
    if (!apc_)
        return;
    const auto control = *apc_;
    const bool late = now - std::exchange(lastApc_, now) > std::chrono::milliseconds(control.timeoutMs);
    const FgFrameIndex frame = last_;
    lock.unlock();
    const bool ended = late || control.callback(frame, control.userData) != 0;
    lock.lock();
    if (ended)
        apc_.reset();
}

} // namespace simulation
