// SPDX-License-Identifier: MIT
#include "hardware/DmaChannel.h"

#include "Failure.h"
#include "hardware/DeviceWrite.h"
#include "hardware/ImageWatch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace simulation {

namespace {

// A board has memory of its own: a late channel catches up with this much of its source.
constexpr std::chrono::milliseconds BOARD_MEMORY{500};

// A late channel writes at most this many images without waiting. The newest image that a reader has got is
// then still intact, and the source continues at its own rate before that image's buffer is overwritten.
FgFrameIndex maxCatchUp(const BufferRing& ring, FgFrameIndex wanted)
{
    if (wanted != FG_GRAB_INFINITE && wanted <= ring.size())
        return std::numeric_limits<FgFrameIndex>::max(); // no buffer is overwritten
    return std::max<FgFrameIndex>(ring.size() - 2, 1);
}

constexpr std::chrono::microseconds MAX_SPIN{50};

// With slower trigger pulses than this, the channel's state is "waiting for trigger" between two pulses.
constexpr double LIVELY_RATE = 1; // Hz

constexpr auto NOBODY_WAITS = std::numeric_limits<FgFrameIndex>::max();

std::atomic<std::int64_t> acquiringNow{0};

std::string eventName(const char* kind, int dma)
{
    return std::string(kind) + std::to_string(dma);
}

} // namespace

// Computes when the next image of the current source is due.
class DmaChannel::Pace
{
public:
    std::shared_ptr<const Stream> stream;
    Trigger trigger;
    std::uint64_t next = 0; ///< number of that image, from 0 at the source's start

    Pace(FgFrameIndex maxCatchUp, int height)
        : m_longest(static_cast<std::uint64_t>(maxCatchUp)),
          m_height(height)
    {}

    /// Takes the images of \p source from \p joined on, with a trigger that has not changed since
    /// \p triggerChanged; ignores earlier images and triggers.
    void follow(const std::shared_ptr<const Stream>& source, Clock::time_point joined, const Trigger& present,
                Clock::time_point triggerChanged)
    {
        const bool goesOn = stream && source && stream->start == source->start;
        const bool sameTrigger = trigger == present;
        stream = source;
        trigger = present;
        if (!stream || (goesOn && sameTrigger))
            return;
        const bool line = stream->film->scrolls();
        const auto lines = static_cast<std::uint64_t>(line ? m_height : 1);
        m_sourceRate = stream->rate / static_cast<double>(lines);
        m_rate =
            trigger.mode == TriggerMode::External ? triggeredRate(static_cast<double>(lines)) : m_sourceRate;
        m_firstAtOnce = !line && trigger.mode == TriggerMode::FreeRun;
        m_start = std::max(stream->start, triggerChanged);
        m_first = goesOn ? next : (stream->first + lines - 1) / lines;
        next = m_first;
        const std::chrono::duration<double> age = joined - m_start;
        if (m_rate > 0 && age.count() > 0)
            next += static_cast<std::uint64_t>(std::ceil(age.count() * m_rate));
    }

    bool ended() const { return next >= stream->end; }
    bool paused() const { return trigger.mode == TriggerMode::External && trigger.rate == 0; }
    bool asFastAsPossible() const { return m_rate == 0; }

    Clock::time_point due() const
    {
        const auto periods = static_cast<double>(next - m_first) + (m_firstAtOnce ? 0 : 1);
        return m_start + duration(periods / m_rate);
    }

    /// The earliest time at which the source can send its next image.
    Clock::time_point ready() const
    {
        return m_sourceRate > 0 ? m_latest + duration(1 / m_sourceRate) : m_latest;
    }
    void sent(Clock::time_point now) { m_latest = now; }

    // Skips the oldest images that are due if they are more than the board's memory holds, or more than may
    // be written without waiting; returns their number. The next image may not be due yet after that.
    FgFrameIndex skipLost(Clock::time_point now)
    {
        const std::chrono::duration<double> late = now - due(), memory = BOARD_MEMORY;
        const auto waiting = static_cast<std::uint64_t>(late.count() * m_rate) + 1;
        const auto held = std::max(static_cast<std::uint64_t>(memory.count() * m_rate), std::uint64_t{1});
        const auto kept = std::min(held, m_longest - m_written);
        if (waiting <= kept)
            return 0;
        const auto lost = waiting - kept;
        next += lost;
        return static_cast<FgFrameIndex>(lost);
    }

    void waited() { m_written = 0; }
    /// False if the channel has to wait before it writes a further image.
    bool countWritten()
    {
        if (m_written == m_longest)
            return false;
        ++m_written;
        return true;
    }

private:
    static Clock::duration duration(double seconds)
    {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }

    double triggeredRate(double lines) const
    {
        const double rate = trigger.rate / lines;
        return m_sourceRate > 0 ? std::min(rate, m_sourceRate) : rate;
    }

    std::uint64_t m_longest;     ///< images that may be written without waiting
    std::uint64_t m_written = 0; ///< images since the channel last waited for its source
    int m_height;
    double m_sourceRate = 0; ///< images per second that the source can send
    double m_rate = 0;       ///< images per second that arrive; 0: as fast as possible, or none
    Clock::time_point m_start;
    std::uint64_t m_first = 0; ///< number of the image at that moment
    bool m_firstAtOnce = true; ///< the first image is due at that moment, not a period later
    Clock::time_point m_latest{};
};

DmaChannel::DmaChannel(const DmaDescription& description, EventHub& events)
    : m_description(description),
      m_events(events),
      m_startEvent(events.maskOf(eventName("FG_START_OF_FRAME_DMA", description.index))),
      m_lossEvent(events.maskOf(eventName("FG_IMAGES_LOST_DMA", description.index))),
      m_generatorOn(description.generator && description.generator->enabled),
      m_generatorRate(description.generator ? description.generator->frameRate : 0)
{}

DmaChannel::~DmaChannel()
{
    finishThread();
}

void DmaChannel::acquire(std::shared_ptr<BufferRing> ring, FgFrameIndex frames, const Processing& processing)
{
    const std::lock_guard control(m_control);
    {
        const std::lock_guard lock(m_mutex);
        if (m_gone)
            throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
        if (m_closed)
            throw Failure(FG_INVALID_HANDLE, "The board is being freed");
        if (m_running)
            throw Failure(FG_ACQUISITION_RUNNING,
                          "DMA channel " + std::to_string(m_description.index) + " acquires already");
    }
    finishThread(); // of an acquisition that has received all its images
    ring->claim(processing.bytes());
    {
        const std::lock_guard lock(m_mutex);
        m_ring = std::move(ring);
        m_timestamps.assign(static_cast<std::size_t>(m_ring->size()), 0);
        m_wanted = frames;
        m_last = 0;
        m_lost = 0;
        m_processing = processing;
        m_cycle.reset();
        m_linkImages = 0;
        m_stopping = false;
        m_running = true;
        m_joined = Clock::now();
        m_softwareTriggers = 0;
        updateGeneratorStream(false);
    }
    ++acquiringNow;
    try {
        m_thread = std::thread([this] { run(); });
    } catch (...) {
        const std::lock_guard lock(m_mutex);
        finish();
        throw;
    }
}

void DmaChannel::stop()
{
    if (m_threadId.load() == std::this_thread::get_id())
        throw Failure(FG_INVALID_ARGUMENT, "An acquisition cannot be stopped from within its own handler");
    const std::lock_guard control(m_control);
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_delivered.notify_all();
    finishThread();
}

void DmaChannel::close()
{
    if (m_threadId.load() == std::this_thread::get_id())
        throw Failure(FG_INVALID_ARGUMENT, "A board cannot be freed from within an acquisition's handler");
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    stop();
}

void DmaChannel::lose()
{
    {
        const std::lock_guard lock(m_mutex);
        m_gone = true;
    }
    m_changed.notify_all();
    m_delivered.notify_all();
}

void DmaChannel::finishThread()
{
    if (!m_thread.joinable())
        return;
    m_thread.join();
    m_threadId = std::thread::id();
}

bool DmaChannel::acquiring() const
{
    const std::lock_guard lock(m_mutex);
    return m_running;
}

FgFrameIndex DmaChannel::sourceState() const
{
    const std::lock_guard lock(m_mutex);
    if (!source())
        return FG_SOURCE_NONE;
    const bool pulses = m_trigger.mode == TriggerMode::External && m_trigger.rate >= LIVELY_RATE;
    if (m_trigger.mode == TriggerMode::FreeRun || pulses || m_softwareTriggers > 0)
        return FG_SOURCE_STREAMS;
    return FG_SOURCE_WAITS_FOR_TRIGGER;
}

void DmaChannel::setCameraStream(std::shared_ptr<const Stream> stream, bool midway)
{
    {
        const std::lock_guard lock(m_mutex);
        if (midway)
            m_joined = Clock::now();
        m_cameraStream = std::move(stream);
    }
    m_changed.notify_all();
}

void DmaChannel::setLooseLink(std::shared_ptr<const LooseLink> link)
{
    const std::lock_guard lock(m_mutex);
    m_looseLink = std::move(link);
}

void DmaChannel::setGenerator(bool on, Pattern pattern, double frameRate)
{
    {
        const std::lock_guard lock(m_mutex);
        const bool goesOn = m_generatorOn == on && m_generatorRate == frameRate;
        if (goesOn && m_pattern == pattern)
            return;
        m_generatorOn = on;
        m_pattern = pattern;
        m_generatorRate = frameRate;
        if (!goesOn)
            m_joined = Clock::now();
        updateGeneratorStream(goesOn);
    }
    m_changed.notify_all();
}

void DmaChannel::setProcessing(const Processing& processing)
{
    const std::lock_guard lock(m_mutex);
    if (!m_running)
        return; // the next acquisition passes its own settings
    auto next = processing;
    next.format = m_processing.format;
    next.width = m_processing.width;
    next.height = m_processing.height;
    m_processing = next;
    m_cycle.reset();
}

void DmaChannel::setTrigger(const Trigger& trigger)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_trigger == trigger)
            return;
        m_trigger = trigger;
        m_triggerChanged = Clock::now();
        m_softwareTriggers = 0;
    }
    m_changed.notify_all();
}

void DmaChannel::sendSoftwareTrigger(std::uint64_t count)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_trigger.mode != TriggerMode::Software)
            throw Failure(FG_NOT_WRITABLE, "DMA channel " + std::to_string(m_description.index) +
                                               " does not wait for software triggers");
        if (!m_running)
            throw Failure(FG_NOT_ACQUIRING,
                          "DMA channel " + std::to_string(m_description.index) + " does not acquire");
        if (source())
            m_softwareTriggers += count;
    }
    m_changed.notify_all();
}

// Under the lock.
void DmaChannel::updateGeneratorStream(bool goesOn)
{
    const auto start = goesOn && m_generatorStream ? m_generatorStream->start : Clock::now();
    m_generatorStream.reset();
    if (!m_generatorOn || !m_running)
        return;
    const auto& format = *m_processing.format;
    const bool coloured = format.components != Components::Grey;
    m_generatorStream = std::make_shared<const Stream>(
        Stream{patternFilm(m_pattern, m_processing.width, m_processing.height, format.depth, coloured),
               m_generatorRate, start});
}

const std::shared_ptr<const Stream>& DmaChannel::source() const
{
    return m_generatorOn ? m_generatorStream : m_cameraStream;
}

// A source that is as fast as possible has its next image ready before a reader could fall asleep, and waking
// a reader costs the acquisition more than a small image. So the reader spins, and yields if all cores are
// busy. For any other source it sleeps.
void DmaChannel::spinFor(FgFrameIndex frame, std::unique_lock<std::mutex>& lock) const
{
    if (m_last >= frame || !m_running || !source() || source()->rate != 0 ||
        m_trigger.mode != TriggerMode::FreeRun)
        return;
    lock.unlock();
    const auto end = Clock::now() + MAX_SPIN;
    while (m_last < frame && Clock::now() < end)
        std::this_thread::yield();
    lock.lock();
}

FgFrameIndex DmaChannel::waitFor(FgFrameIndex frame, std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    std::unique_lock lock(m_mutex);
    spinFor(frame, lock);
    while (m_last < frame && m_running && !m_stopping && !m_gone) {
        m_awaited = std::min(m_awaited, frame); // waking the readers resets it
        if (m_delivered.wait_until(lock, deadline) == std::cv_status::timeout)
            break;
    }
    if (m_gone)
        throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
    if (m_running && m_stopping)
        throw Failure(FG_NOT_ACQUIRING, "The acquisition was stopped before image " + std::to_string(frame));
    if (m_last >= frame)
        return m_last;
    if (!m_running)
        throw Failure(FG_NOT_ACQUIRING,
                      "DMA channel " + std::to_string(m_description.index) + " does not acquire");
    throw Failure(FG_TIMEOUT,
                  "No image " + std::to_string(frame) + " within " + std::to_string(timeout.count()) + " ms");
}

FgFrameIndex DmaChannel::lostFrames() const
{
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

std::uint64_t DmaChannel::timestampOf(FgFrameIndex frame) const
{
    const std::lock_guard lock(m_mutex);
    const auto buffers = static_cast<FgFrameIndex>(m_timestamps.size());
    if (frame < 1 || frame > m_last || frame <= m_last - buffers)
        throw Failure(FG_INVALID_ARGUMENT, "The ring does not hold image " + std::to_string(frame));
    return m_timestamps[static_cast<std::size_t>((frame - 1) % buffers)];
}

std::shared_ptr<BufferRing> DmaChannel::ring() const
{
    const std::lock_guard lock(m_mutex);
    return m_ring;
}

void DmaChannel::forgetRing(const BufferRing& ring)
{
    const std::lock_guard lock(m_mutex);
    if (!m_running && m_ring.get() == &ring)
        m_ring.reset();
}

void DmaChannel::setApc(const FgApcControl& control)
{
    const std::lock_guard lock(m_mutex);
    if (m_running)
        throw Failure(FG_ACQUISITION_RUNNING, "A handler is registered before the acquisition starts");
    m_apc.reset();
    if (control.callback != nullptr)
        m_apc = control;
}

std::int64_t DmaChannel::acquiringChannels() noexcept
{
    return acquiringNow;
}

void DmaChannel::run()
{
    m_threadId = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    Pace pace(maxCatchUp(*m_ring, m_wanted), m_processing.height);
    m_lastApc = Clock::now();
    const auto bytes = m_processing.bytes();
    while (!m_stopping && !m_gone && m_last != m_wanted) {
        if (!imageDue(lock, pace))
            continue;
        const auto damage = damageOfNext();
        if (damage == LooseLink::Damage::Lost) {
            loseImage(pace, lock);
            continue;
        }
        const auto target = m_ring->bufferOf(m_last + 1).first(bytes);
        const auto cycle = cycleFor(*pace.stream);
        lock.unlock();
        const auto taken = m_events.clockNs();
        m_events.raise(m_startEvent, m_last + 1); // only this thread writes m_last
        {
            const DeviceWrite scope;
            cycle->write(pace.next++, target);
            if (damage == LooseLink::Damage::Torn)
                LooseLink::tear(target);
        }
        lock.lock();
        if (damage == LooseLink::Damage::Late)
            m_changed.wait_for(lock, LooseLink::LATENESS, [this] { return m_stopping || m_gone; });
        const auto now = Clock::now();
        publish(taken);
        callApc(lock, now);
        tellOfImage(lock);
    }
    finish(); // under the same lock: a client that has seen the last image finds the ring free
}

const std::shared_ptr<const FrameCycle>& DmaChannel::cycleFor(const Stream& stream)
{
    if (!m_cycle || m_cycleFilm != stream.film) {
        m_cycle = FrameCycle::of(stream.film, m_processing);
        m_cycleFilm = stream.film;
    }
    return m_cycle;
}

void DmaChannel::finish()
{
    m_running = false;
    m_ring->release();
    --acquiringNow;
    m_delivered.notify_all();
}

// Waits until the next image is due. False if something changed in the meantime, which has to be checked
// first.
bool DmaChannel::imageDue(std::unique_lock<std::mutex>& lock, Pace& pace)
{
    if (pace.stream != source() || pace.trigger != m_trigger)
        pace.follow(source(), m_joined, m_trigger, m_triggerChanged);
    if (!pace.stream || pace.ended() || pace.paused()) {
        pace.waited();
        m_changed.wait(lock);
        return false;
    }
    if (m_trigger.mode == TriggerMode::Software)
        return triggeredImageDue(lock, pace);
    if (pace.asFastAsPossible())
        return true;
    const auto now = Clock::now();
    if (now < pace.due()) {
        pace.waited();
        m_changed.wait_until(lock, pace.due());
        return false;
    }
    const auto lost = pace.skipLost(now);
    m_lost += lost;
    if (lost > 0)
        m_events.raise(m_lossEvent, m_last);
    return pace.countWritten();
}

bool DmaChannel::triggeredImageDue(std::unique_lock<std::mutex>& lock, Pace& pace)
{
    if (m_softwareTriggers == 0) {
        m_changed.wait(lock);
        return false;
    }
    const auto now = Clock::now();
    if (now < pace.ready()) {
        m_changed.wait_until(lock, pace.ready());
        return false;
    }
    --m_softwareTriggers;
    pace.sent(now);
    return true;
}

std::optional<LooseLink::Damage> DmaChannel::damageOfNext()
{
    if (m_generatorOn)
        return std::nullopt;
    const auto image = m_linkImages++;
    if (!m_looseLink || !m_looseLink->damages(image))
        return std::nullopt;
    return m_looseLink->damage;
}

void DmaChannel::loseImage(Pace& pace, std::unique_lock<std::mutex>& lock)
{
    ++pace.next;
    ++m_lost;
    m_events.raise(m_lossEvent, m_last);
    lock.unlock(); // so that stop() gets the lock even if a source as fast as possible loses all its images
    std::this_thread::yield();
    lock.lock();
}

void DmaChannel::tellOfImage(std::unique_lock<std::mutex>& lock) const
{
    const auto arrived = ImageWatch::s_arrived.load(std::memory_order_acquire);
    if (arrived == nullptr)
        return;
    const FgFrameIndex frame = m_last;
    lock.unlock();
    arrived(m_board, m_description.index, frame);
    lock.lock();
}

void DmaChannel::publish(std::uint64_t taken)
{
    // Readers that wait for a later image are not woken.
    m_timestamps[static_cast<std::size_t>(m_last % m_ring->size())] = taken;
    if (++m_last < m_awaited)
        return;
    m_awaited = NOBODY_WAITS;
    m_delivered.notify_all();
}

void DmaChannel::callApc(std::unique_lock<std::mutex>& lock, Clock::time_point now)
{
    if (!m_apc)
        return;
    const auto control = *m_apc;
    const bool late = now - std::exchange(m_lastApc, now) > std::chrono::milliseconds(control.timeoutMs);
    const FgFrameIndex frame = m_last;
    lock.unlock();
    const bool ended = late || control.callback(frame, control.userData) != 0;
    lock.lock();
    if (ended)
        m_apc.reset();
}

} // namespace simulation
