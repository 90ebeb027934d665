// SPDX-License-Identifier: MIT
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"

#include "ImageBuffers.h"
#include "gui-core/keys/Keys.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ovra::display {

namespace keys = gui::keys::parameters;
using reference::AcquisitionState;
using reference::AcquisitionStatus;
using reference::log;
using reference::LogLevel;
using reference::probe;

namespace {
constexpr unsigned int DEFAULT_TIMEOUT_SECONDS = 10;

// If the ring is overwritten while an image is copied, the next attempt usually fails, too. More
// attempts would only delay the display.
constexpr int COPY_ATTEMPTS = 3;

/// A negative number in a client's configuration arrives as a huge one. Like 0, it counts as 1.
unsigned int atLeastOne(unsigned int buffers)
{
    return static_cast<int>(buffers) < 1 ? 1 : buffers;
}

} // namespace

/// The group's states:
///
///   | running | paused | resume |                                                                       |
///   |---------|--------|--------|-----------------------------------------------------------------------|
///   | no      | no     | no     | stopped                                                               |
///   | yes     | no     | no     | the runtime acquires                                                  |
///   | no      | yes    | yes/no | the channel changes; then the acquisition resumes, or does not        |
///
/// Two locks. `control` serialises changes: the group calls the runtime's start, stop and allocation, the
/// client's memory functions and the log under it, because these must not overlap. `mutex` guards the fields;
/// no foreign code runs under it. A wait for an image holds neither lock: it counts in `waiters`, and the
/// group frees no buffers while that is above 0.
struct FglibFrameBufferGroup::State
{
    boost::shared_ptr<const reference::RuntimeEntries> runtime;
    Fg_Struct_s* handle = nullptr;
    int board = 0;
    unsigned int dma = 0;
    MemoryBudget budget{};

    mutable std::mutex control;
    // Lost between the start and the runtime's last reset of its count; under control.
    std::int64_t lostEarlier = 0;

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::unique_ptr<ImageBuffers> ring; // replaced under control and mutex
    Geometry geometry;
    unsigned int requested = 0;
    bool running = false;
    bool paused = false;
    bool resume = false;
    bool released = false;
    int images = 0;           // requested for this acquisition, negative: without end
    std::int64_t newest = 0;  // number of the newest image that was delivered
    std::int64_t earlier = 0; // delivered before the last pause, after which the runtime counts from 0
    int waiters = 0;
    AcquisitionStatus failure; // of the current acquisition; Stopped: no failure

    std::atomic<unsigned int> timeoutSeconds{DEFAULT_TIMEOUT_SECONDS};
    std::vector<std::uint8_t> copy; // the delivered image; used in waitForImage only
    std::uint64_t timestamp = 0;    // of that image; used in waitForImage only
    std::vector<std::uint8_t> room; // for larger copies: the next wait swaps it in
    std::size_t roomBytes = 0;      // of the largest image so far; under control

    Geometry readGeometry() const;
    PixelFormat readFormat() const;
    int readInteger(int parameter, const char* name) const;
    void writeInteger(int parameter, const char* name, int value);
    std::int64_t lostNow() const;
    AcquisitionState sourceState(const ImageBuffers& source) const;
    AcquisitionStatus status() const;

    void start(int imageCount);
    void stop();
    void startRuntime();
    void stopRuntime();
    bool pause();
    void unpause();
    void makeRing(Geometry size, unsigned int buffers);
    void dropRing();
    void takeUpGeometry();
    void takeUpTimeout();
    void changeTimeout(std::int32_t seconds);
    void goOnWithNewGeometry();
    void changeBufferCount(unsigned int buffers);
    void release();

    enum class Wait
    {
        Delivered,
        Interrupted, // by a pause after which the acquisition resumes
        Ended,
        Failed // the runtime reported an error
    };
    Wait waitOnce(std::int64_t after, Image& image, FgFrameIndex& number);
    FgFrameIndex fetch(FgFrameIndex wanted, const ImageBuffers& source);
    FgFrameIndex awaitPicture(FgFrameIndex wanted, const ImageBuffers& source) const;
    FgFrameIndex copyNewest(FgFrameIndex wanted, const ImageBuffers& source);
    std::uint64_t timestampOf(FgFrameIndex number, const ImageBuffers& source) const;
    bool overwritten(FgFrameIndex number, const ImageBuffers& source) const;
    void noteFailure(AcquisitionState state, const std::string& reason);
    void noteFailure(int code);

    std::string text(const std::string& message) const
    {
        return "board " + std::to_string(board) + " DMA " + std::to_string(dma) + ": " + message;
    }
    [[noreturn]] void fail(const std::string& what, int code) const
    {
        throw std::runtime_error(reference::failureText(*runtime, text(what), code));
    }
    void requireBuffers() const
    {
        if (released)
            throw std::runtime_error(text("the channel's buffers were released"));
    }
};

int FglibFrameBufferGroup::State::readInteger(int parameter, const char* name) const
{
    std::int32_t value = 0;
    const int code = runtime->Fg_getParameter(handle, parameter, &value, dma);
    if (code != FG_OK)
        fail(std::string(name) + " could not be read", code);
    return value;
}

void FglibFrameBufferGroup::State::writeInteger(int parameter, const char* name, int value)
{
    requireBuffers();
    // Images of another size must not arrive in the existing buffers, so they are reallocated at once.
    const bool mine = running && pause();
    const std::int32_t number = value;
    const int code = runtime->Fg_setParameterWithType(handle, parameter, &number, dma, FG_TYPE_INT32);
    if (mine)
        goOnWithNewGeometry();
    if (code != FG_OK)
        fail(std::string(name) + " = " + std::to_string(value) + " was refused", code);
}

Geometry FglibFrameBufferGroup::State::readGeometry() const
{
    return {readInteger(FG_WIDTH, keys::WIDTH), readInteger(FG_HEIGHT, keys::HEIGHT), readFormat()};
}

PixelFormat FglibFrameBufferGroup::State::readFormat() const
{
    std::int32_t number = 0;
    const int code = runtime->Fg_getParameter(handle, FG_PIXELFORMAT, &number, dma);
    if (code == FG_INVALID_PARAMETER)
        return PixelFormat::Mono8; // an applet with a single format
    if (code != FG_OK)
        fail("FG_PIXELFORMAT could not be read", code);
    const auto format = pixelFormatOf(number);
    if (!format)
        throw std::runtime_error(text("the pixel format " + std::to_string(number) + " is not known"));
    return *format;
}

// The runtime restarts its count with each acquisition.
std::int64_t FglibFrameBufferGroup::State::lostNow() const
{
    if (!runtime->Fg_getStatusEx)
        return 0;
    const auto count = runtime->Fg_getStatusEx(handle, FG_STATUS_LOST_IMAGES, 0, dma, ring->get());
    return std::max<FgFrameIndex>(count, 0); // a negative one is an error code
}

// If the runtime does not report the source's state, assume that it streams.
AcquisitionState FglibFrameBufferGroup::State::sourceState(const ImageBuffers& source) const
{
    const auto state =
        runtime->Fg_getStatusEx ? runtime->Fg_getStatusEx(handle, FG_STATUS_SOURCE, 0, dma, source.get()) : 0;
    if (state == FG_SOURCE_NONE)
        return AcquisitionState::NoSignal;
    if (state == FG_SOURCE_WAITS_FOR_TRIGGER)
        return AcquisitionState::WaitingForTrigger;
    return AcquisitionState::Running;
}

// Under control.
AcquisitionStatus FglibFrameBufferGroup::State::status() const
{
    AcquisitionStatus status;
    bool runs = false;
    {
        const std::lock_guard lock(mutex);
        status = failure;
        runs = running;
        if (paused && resume)
            status.state = AcquisitionState::Running;
    }
    status.board = board;
    status.dma = static_cast<int>(dma);
    if (status.state == AcquisitionState::Stopped && runs)
        status.state = sourceState(*ring);
    return status;
}

// --- starting and stopping: under control ---------------------------------------------------------

void FglibFrameBufferGroup::State::start(int imageCount)
{
    requireBuffers();
    stop();
    {
        const std::lock_guard lock(mutex);
        images = imageCount;
        newest = 0;
        earlier = 0;
        failure = {};
        lostEarlier = 0;
        resume = paused;
        if (paused)
            return;
    }
    takeUpGeometry();
    takeUpTimeout();
    startRuntime();
}

void FglibFrameBufferGroup::State::stop()
{
    {
        const std::lock_guard lock(mutex);
        resume = false;
        changed.notify_all();
    }
    stopRuntime();
}

void FglibFrameBufferGroup::State::startRuntime()
{
    const FgFrameIndex frames = images < 0 ? FG_GRAB_INFINITE : images - earlier;
    if (frames == 0)
        return;
    const int code = runtime->Fg_AcquireEx(handle, dma, frames, FG_ACQUIRE_STANDARD, ring->get());
    if (code != FG_OK)
        fail("acquisition could not be started", code);
    const std::lock_guard lock(mutex);
    running = true;
}

// When it returns, no thread waits in the runtime for an image of the ring.
void FglibFrameBufferGroup::State::stopRuntime()
{
    {
        const std::lock_guard lock(mutex);
        if (!std::exchange(running, false))
            return;
    }
    const int code = runtime->Fg_stopAcquireEx(handle, dma, ring->get(), 0);
    if (code != FG_OK && code != FG_NOT_ACQUIRING && code != FG_DEVICE_LOST)
        log(LogLevel::Error,
            reference::failureText(*runtime, text("acquisition could not be stopped"), code));
    lostEarlier += lostNow();
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return waiters == 0; });
}

/// True if this call paused the group, and the caller has to unpause it.
bool FglibFrameBufferGroup::State::pause()
{
    {
        const std::lock_guard lock(mutex);
        if (paused)
            return false;
        paused = true;
        resume = running;
    }
    stopRuntime();
    const std::lock_guard lock(mutex);
    earlier = newest;
    return true;
}

void FglibFrameBufferGroup::State::unpause()
{
    bool goOn = false;
    {
        const std::lock_guard lock(mutex);
        goOn = resume && ring;
    }
    try {
        if (goOn)
            startRuntime();
    } catch (const std::exception& error) {
        log(LogLevel::Error, error.what());
        noteFailure(AcquisitionState::Failed, error.what());
    }
    const std::lock_guard lock(mutex);
    paused = false;
    resume = false;
    changed.notify_all();
}

// --- buffers: under control, with the runtime stopped ----------------------------------------------

void FglibFrameBufferGroup::State::makeRing(Geometry size, unsigned int buffers)
{
    auto made = std::make_unique<ImageBuffers>(runtime, handle, size, buffers, budget);
    // Written here, so that the system maps the pages now and not while an image arrives.
    std::vector<std::uint8_t> pages(size.bytes() > roomBytes ? size.bytes() : 0);
    const std::lock_guard lock(mutex);
    if (!pages.empty()) {
        roomBytes = pages.size();
        room = std::move(pages);
    }
    ring = std::move(made);
    geometry = size;
}

void FglibFrameBufferGroup::State::dropRing()
{
    std::unique_ptr<ImageBuffers> dropped;
    {
        const std::lock_guard lock(mutex);
        dropped = std::move(ring);
    }
}

void FglibFrameBufferGroup::State::takeUpGeometry()
{
    const Geometry size = readGeometry();
    if (ring && ring->geometry() == size)
        return;
    dropRing(); // first, so that its bytes are free for the new one
    makeRing(size, requested);
}

// Also writes the channel's parameter, so that the timeout is shown and stored. A channel may have none.
void FglibFrameBufferGroup::State::changeTimeout(std::int32_t seconds)
{
    int code = FG_VALUE_OUT_OF_RANGE;
    if (seconds > 0)
        code = runtime->Fg_setParameterWithType(handle, FG_TIMEOUT_PARAMETER, &seconds, dma, FG_TYPE_INT32);
    if (code == FG_OK || code == FG_INVALID_PARAMETER) {
        timeoutSeconds = static_cast<unsigned int>(seconds);
        return;
    }
    takeUpTimeout();
    log(LogLevel::Warning,
        reference::failureText(*runtime,
                               text("a timeout of " + std::to_string(seconds) + " s was refused; it stays " +
                                    std::to_string(timeoutSeconds.load()) + " s"),
                               code));
}

// Reads the channel's parameter, if it has one: a configuration file may have changed it.
void FglibFrameBufferGroup::State::takeUpTimeout()
{
    std::int32_t seconds = 0;
    if (runtime->Fg_getParameter(handle, FG_TIMEOUT_PARAMETER, &seconds, dma) == FG_OK && seconds > 0)
        timeoutSeconds = static_cast<unsigned int>(seconds);
}

void FglibFrameBufferGroup::State::goOnWithNewGeometry()
{
    std::exception_ptr failure;
    try {
        takeUpGeometry();
    } catch (...) {
        failure = std::current_exception();
    }
    unpause();
    if (failure)
        std::rethrow_exception(failure);
}

void FglibFrameBufferGroup::State::changeBufferCount(unsigned int buffers)
{
    const unsigned int before = ring ? ring->count() : 1;
    const Geometry size = geometry;
    dropRing();
    try {
        makeRing(size, buffers);
    } catch (...) {
        makeRing(size, before);
        throw;
    }
}

void FglibFrameBufferGroup::State::release()
{
    stop();
    dropRing();
    const std::lock_guard lock(mutex);
    released = true;
    paused = false;
}

// --- images ------------------------------------------------------------------------------------------

/// Waits in the runtime, without the lock, for a picture of at least the number \p wanted, and copies the
/// newest. A negative result is the runtime's code.
FgFrameIndex FglibFrameBufferGroup::State::fetch(FgFrameIndex wanted, const ImageBuffers& source)
{
    FgFrameIndex number = copyNewest(wanted, source);
    for (int attempt = 1; attempt < COPY_ATTEMPTS && number > 0 && overwritten(number, source); ++attempt)
        number = copyNewest(number, source);
    // If every attempt was overwritten, deliver the last copy: a torn image is better than none.
    return number;
}

/// The number of the newest picture, once there is one of at least the number \p wanted; or a code.
FgFrameIndex FglibFrameBufferGroup::State::awaitPicture(FgFrameIndex wanted, const ImageBuffers& source) const
{
    const FgFrameIndex number = runtime->Fg_getLastPicNumberBlockingEx(
        handle, wanted, dma, static_cast<int>(timeoutSeconds.load()), source.get());
    return number < wanted && number >= 0 ? FG_TIMEOUT : number;
}

FgFrameIndex FglibFrameBufferGroup::State::copyNewest(FgFrameIndex wanted, const ImageBuffers& source)
{
    FgFrameIndex number = awaitPicture(wanted, source);
    // A channel that waits for a trigger does not time out.
    while (number == FG_TIMEOUT && sourceState(source) == AcquisitionState::WaitingForTrigger)
        number = awaitPicture(wanted, source);
    if (number < wanted)
        return number;
    const auto* const pixels =
        static_cast<const std::uint8_t*>(runtime->Fg_getImagePtrEx(handle, number, dma, source.get()));
    if (!pixels) { // the board was lost since the wait; asking for the number gives its code
        const FgFrameIndex latest = runtime->Fg_getLastPicNumberEx(handle, dma, source.get());
        return latest < 0 ? latest : FG_INVALID_MEMORY;
    }
    std::memcpy(copy.data(), pixels, source.geometry().bytes());
    timestamp = timestampOf(number, source);
    return number;
}

// 0 if the runtime gives none.
std::uint64_t FglibFrameBufferGroup::State::timestampOf(FgFrameIndex number, const ImageBuffers& source) const
{
    std::uint64_t nanoseconds = 0;
    if (!runtime->Fg_getParameterEx ||
        runtime->Fg_getParameterEx(handle, FG_TIMESTAMP_NS, &nanoseconds, dma, source.get(), number) != FG_OK)
        return 0;
    return nanoseconds;
}

/// True if the runtime may have written to the buffer of picture \p number since it was the newest. The
/// runtime fills the buffer after the newest one, so it reaches a buffer one picture before the number that
/// goes there.
bool FglibFrameBufferGroup::State::overwritten(FgFrameIndex number, const ImageBuffers& source) const
{
    const FgFrameIndex latest = runtime->Fg_getLastPicNumberEx(handle, dma, source.get());
    // With one buffer, only a further picture shows that it was overwritten.
    return latest - number >= std::max<FgFrameIndex>(1, FgFrameIndex{source.count()} - 1);
}

FglibFrameBufferGroup::State::Wait FglibFrameBufferGroup::State::waitOnce(std::int64_t after, Image& image,
                                                                          FgFrameIndex& number)
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return !paused || !resume; });
    if (!running)
        return Wait::Ended;
    const std::int64_t base = earlier;
    const ImageBuffers& source = *ring; // not freed while this call counts in waiters
    const Geometry size = source.geometry();
    if (!room.empty())
        copy = std::exchange(room, {});
    ++waiters;
    lock.unlock();
    number = fetch(after - base + 1, source);
    lock.lock();
    --waiters;
    changed.notify_all();
    if (number > 0) {
        newest = base + number;
        image = {.pixels = copy.data(),
                 .width = size.width,
                 .height = size.height,
                 .number = newest,
                 .format = size.format,
                 .timestampNs = timestamp,
                 .arrival = std::chrono::system_clock::now()};
        return Wait::Delivered;
    }
    if (running)
        return Wait::Failed;
    return paused && resume ? Wait::Interrupted : Wait::Ended;
}

void FglibFrameBufferGroup::State::noteFailure(AcquisitionState state, const std::string& reason)
{
    const std::lock_guard lock(mutex);
    failure.state = state;
    failure.reason = reason;
}

void FglibFrameBufferGroup::State::noteFailure(int code)
{
    auto state = AcquisitionState::Failed;
    std::string reason = reference::failureText(*runtime, text("no image"), code);
    if (code == FG_TIMEOUT) {
        state = AcquisitionState::TimedOut;
        reason = text("no image within " + std::to_string(timeoutSeconds.load()) + " s");
    } else if (code == FG_DEVICE_LOST) {
        state = AcquisitionState::DeviceLost;
        reason = text("the board is not there any more");
    }
    noteFailure(state, reason);
    log(LogLevel::Warning, reason);
}

// --- the group ------------------------------------------------------------------------------------------

FglibFrameBufferGroup::FglibFrameBufferGroup() : m_state(std::make_unique<State>()) {}

FglibFrameBufferGroup::~FglibFrameBufferGroup()
{
    const std::lock_guard control(m_state->control);
    if (m_state->ring)
        m_state->release();
}

boost::shared_ptr<FglibFrameBufferGroup>
FglibFrameBufferGroup::create(Fg_Struct_s* handle, int boardIndex, unsigned int dmaIndex,
                              unsigned int buffers, UsedMemory usedMemory, TotalMemory totalMemory,
                              UpdateUsedMemory updateUsedMemory)
{
    probe("FglibFrameBufferGroup::create", "board=", boardIndex, " dma=", dmaIndex, " buffers=", buffers);
    const auto group = reference::liveObject(new FglibFrameBufferGroup);
    State& state = *group->m_state;
    state.runtime = reference::requireRuntime();
    state.handle = handle;
    state.board = boardIndex;
    state.dma = dmaIndex;
    state.budget = {usedMemory, totalMemory, updateUsedMemory};
    state.requested = atLeastOne(buffers);
    state.makeRing(state.readGeometry(), state.requested);
    return group;
}

void FglibFrameBufferGroup::setBufferCount(int buffers)
{
    probe("FglibFrameBufferGroup::setBufferCount", "dma=", m_state->dma, " buffers=", buffers);
    if (buffers < 1)
        throw std::invalid_argument(
            m_state->text(std::to_string(buffers) + " buffers: at least 1 is needed"));
    const std::lock_guard control(m_state->control);
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->requested = static_cast<unsigned int>(buffers);
    }
    // After an unload there is nothing to change.
    if (m_state->released)
        return;
    const bool mine = m_state->pause();
    std::exception_ptr failure;
    try {
        m_state->changeBufferCount(static_cast<unsigned int>(buffers));
    } catch (...) {
        failure = std::current_exception();
    }
    if (mine)
        m_state->unpause();
    if (failure)
        std::rethrow_exception(failure);
}

unsigned int FglibFrameBufferGroup::requestedBufferCount() const
{
    probe("FglibFrameBufferGroup::requestedBufferCount", "dma=", m_state->dma);
    const std::lock_guard lock(m_state->mutex);
    return m_state->requested;
}

unsigned int FglibFrameBufferGroup::bufferCount() const
{
    probe("FglibFrameBufferGroup::bufferCount", "dma=", m_state->dma);
    const std::lock_guard lock(m_state->mutex);
    return m_state->ring ? m_state->ring->count() : 0;
}

void FglibFrameBufferGroup::releaseBuffers()
{
    probe("FglibFrameBufferGroup::releaseBuffers", "dma=", m_state->dma);
    const std::lock_guard control(m_state->control);
    m_state->release();
}

int FglibFrameBufferGroup::width() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->geometry.width;
}

int FglibFrameBufferGroup::height() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->geometry.height;
}

void FglibFrameBufferGroup::startAcquisition(int images)
{
    const std::lock_guard control(m_state->control);
    m_state->start(images);
}

void FglibFrameBufferGroup::stopAcquisition()
{
    const std::lock_guard control(m_state->control);
    m_state->stop();
}

bool FglibFrameBufferGroup::waitForImage(std::int64_t after, Image& image)
{
    State::Wait result = State::Wait::Interrupted;
    FgFrameIndex number = 0;
    while (result == State::Wait::Interrupted)
        result = m_state->waitOnce(after, image, number);
    if (result == State::Wait::Failed)
        m_state->noteFailure(static_cast<int>(number));
    return result == State::Wait::Delivered;
}

unsigned int FglibFrameBufferGroup::dmaIndex() const
{
    return m_state->dma;
}

AcquisitionStatus FglibFrameBufferGroup::acquisitionStatus() const
{
    const std::lock_guard control(m_state->control);
    return m_state->status();
}

std::int64_t FglibFrameBufferGroup::lostImages() const
{
    const std::lock_guard control(m_state->control);
    return m_state->lostEarlier + (m_state->running ? m_state->lostNow() : 0); // written under control only
}

void FglibFrameBufferGroup::setTimeout(unsigned int seconds)
{
    probe("FglibFrameBufferGroup::setTimeout", "dma=", m_state->dma, " seconds=", seconds);
    const std::lock_guard control(m_state->control);
    if (!m_state->released)
        m_state->changeTimeout(static_cast<std::int32_t>(seconds)); // a negative number arrives as a huge one
}

void FglibFrameBufferGroup::setWidth(int width)
{
    probe("FglibFrameBufferGroup::setWidth", "dma=", m_state->dma, " width=", width);
    const std::lock_guard control(m_state->control);
    m_state->writeInteger(FG_WIDTH, keys::WIDTH, width);
}

void FglibFrameBufferGroup::setHeight(int height)
{
    probe("FglibFrameBufferGroup::setHeight", "dma=", m_state->dma, " height=", height);
    const std::lock_guard control(m_state->control);
    m_state->writeInteger(FG_HEIGHT, keys::HEIGHT, height);
}

void FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot(int width, int height, bool begin)
{
    probe("FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot", "dma=", m_state->dma, " width=", width,
          " height=", height, " begin=", begin);
    const std::lock_guard control(m_state->control);
    if (m_state->released)
        return;
    m_state->pause();
    if (!begin)
        m_state->goOnWithNewGeometry();
}

} // namespace ovra::display
