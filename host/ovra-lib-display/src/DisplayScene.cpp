// SPDX-License-Identifier: MIT
#include "ovra-lib-display/DisplayScene.h"

#include "ArrivalRate.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

namespace ovra::display {

using reference::AcquisitionCounters;
using reference::AcquisitionFigures;
using reference::AcquisitionObserver;
using reference::AcquisitionState;
using reference::AcquisitionStatus;
using reference::log;
using reference::LogLevel;
using reference::probe;

DisplaySceneVisualizer::~DisplaySceneVisualizer() = default;

namespace {

/// Joins a thread at the end of a scope, also after an exception.
struct Joined
{
    std::thread& thread;
    ~Joined() { thread.join(); }
};

/// Runs \p step and logs its exception, for the grabbing thread, which must not throw. Returns the logged
/// text, or "".
template <class Step>
std::string logFailure(const FrameBufferGroup& source, const std::string& failure, Step step)
{
    std::string reason;
    try {
        step();
        return {};
    } catch (const std::exception& error) {
        reason = error.what();
    } catch (...) {
        reason = "an exception of unknown type";
    }
    reason = "DMA " + std::to_string(source.dmaIndex()) + ": " + failure + ": " + reason;
    log(LogLevel::Error, reason);
    return reason;
}

AcquisitionCounters operator+(const AcquisitionCounters& left, const AcquisitionCounters& right)
{
    return {left.received + right.received, left.shown + right.shown, left.skipped + right.skipped,
            left.lost + right.lost};
}

double secondsBetween(std::chrono::steady_clock::time_point begin, std::chrono::steady_clock::time_point end)
{
    return std::chrono::duration<double>(end - begin).count();
}

} // namespace

/// Two locks. `control` serialises starts, stops and changes of the group; it is held during calls of the
/// group and while the grabbing thread ends, neither of which calls the scene. `mutex` guards the fields; no
/// foreign code runs under it.
struct DisplayScene::State
{
    using Clock = std::chrono::steady_clock;

    std::mutex control;
    std::thread grabber; // guarded by control

    mutable std::mutex mutex;
    std::map<int, boost::shared_ptr<FrameBufferGroup>> groups;
    std::condition_variable showingEnded;
    DisplaySceneVisualizer* visualizer = nullptr;
    bool showing = false;        // the visualizer is being called
    std::uint64_t showCount = 0; // number of its calls, over all starts
    DisplayStatistics statistics;
    int starts = 0;
    std::int64_t lost = 0;       // since the start; the last known count
    AcquisitionCounters earlier; // of all starts before the current one
    ArrivalRate rate;
    Clock::time_point arrived; // time of the newest image
    AcquisitionStatus lastEnd; // of the last acquisition, while none runs
    AcquisitionObserver::Signal ended;

    std::atomic<bool> grabbing{false};
    std::atomic<bool> stopping{false};
    std::atomic<std::thread::id> grabberId{};
    std::atomic<int> dma{-1}; // of the group at position 0, for the journal

    boost::shared_ptr<FrameBufferGroup> group() const
    {
        const std::lock_guard lock(mutex);
        const auto found = groups.find(0);
        return found == groups.end() ? boost::shared_ptr<FrameBufferGroup>() : found->second;
    }

    void setGroup(int position, const boost::shared_ptr<FrameBufferGroup>& next);
    void start(int images);
    void stop();
    void grab(FrameBufferGroup& source, int images);
    void takeImages(FrameBufferGroup& source, int images);
    void take(const Image& image, std::int64_t previous, Clock::time_point started);
    AcquisitionStatus endOf(const FrameBufferGroup& source, int images, const std::string& failure) const;
    void countLost(const FrameBufferGroup& source, int start);
    void countLostNow();
    AcquisitionStatus status() const;
    AcquisitionFigures figures();
    AcquisitionCounters sinceStart() const;
    void show(const Image& image);
    void refuseGrabber(const char* operation) const;
};

void DisplayScene::State::setGroup(int position, const boost::shared_ptr<FrameBufferGroup>& next)
{
    boost::shared_ptr<FrameBufferGroup> displaced; // released outside the lock
    const std::lock_guard lock(mutex);
    auto& place = groups[position];
    displaced = place;
    place = next;
    if (position == 0)
        dma = next ? static_cast<int>(next->dmaIndex()) : -1;
}

void DisplayScene::State::start(int images)
{
    const auto source = group();
    if (!source)
        return;
    {
        const std::lock_guard lock(mutex);
        earlier = earlier + sinceStart();
        statistics = {};
        lost = 0;
        ++starts;
        lastEnd = {};
        rate.restart(Clock::now());
    }
    source->startAcquisition(images);
    stopping = false;
    grabbing = true;
    try {
        grabber = std::thread([this, source, images] { grab(*source, images); });
    } catch (...) {
        grabbing = false;
        source->stopAcquisition();
        throw;
    }
}

void DisplayScene::State::stop()
{
    if (!grabber.joinable())
        return;
    stopping = true;
    const Joined joined{grabber};
    if (const auto source = group())
        source->stopAcquisition();
}

void DisplayScene::State::grab(FrameBufferGroup& source, int images)
{
    grabberId = std::this_thread::get_id();
    const auto failure = logFailure(source, "grabbing ended", [&] { takeImages(source, images); });
    AcquisitionStatus end;
    logFailure(source, "the end's reason is not known", [&] { end = endOf(source, images, failure); });
    // Also after a failure: nothing else stops the source.
    logFailure(source, "acquisition could not be stopped", [&] { source.stopAcquisition(); });
    logFailure(source, "lost images could not be counted", [&] { countLost(source, starts); });
    {
        const std::lock_guard lock(mutex);
        lastEnd = end;
        grabbing = false;
    }
    // The thread's id is still set, so that listeners, like the visualizer, cannot start or stop the scene.
    if (end.state != AcquisitionState::Stopped)
        logFailure(source, "the end could not be reported", [&] { ended(end); });
    grabberId = std::thread::id();
}

AcquisitionStatus DisplayScene::State::endOf(const FrameBufferGroup& source, int images,
                                             const std::string& failure) const
{
    AcquisitionStatus end = source.acquisitionStatus();
    end.dma = static_cast<int>(source.dmaIndex());
    const std::lock_guard lock(mutex);
    if (!failure.empty()) {
        end.state = AcquisitionState::Failed;
        end.reason = failure;
    } else if (!stopping && images >= 0 && statistics.received >= images) {
        end.state = AcquisitionState::CountReached;
        end.reason = "board " + std::to_string(end.board) + " DMA " + std::to_string(end.dma) + ": all " +
                     std::to_string(images) + " images arrived";
    } else if (stopping || end.reason.empty()) { // stopped by a client of the scene or of the group
        end.state = AcquisitionState::Stopped;
        end.reason.clear();
    }
    return end;
}

/// \p start: the acquisition whose images the group counts; another one may begin meanwhile.
void DisplayScene::State::countLost(const FrameBufferGroup& source, int start)
{
    const auto counted = source.lostImages();
    const std::lock_guard lock(mutex);
    if (start == starts)
        lost = std::max(lost, counted); // a lost board reports 0
}

void DisplayScene::State::countLostNow()
{
    const auto source = group();
    int start = 0;
    {
        const std::lock_guard lock(mutex);
        if (!source || !grabbing)
            return;
        start = starts;
    }
    countLost(*source, start);
}

void DisplayScene::State::takeImages(FrameBufferGroup& source, int images)
{
    const auto started = Clock::now();
    std::int64_t newest = 0;
    Image image;
    while (!stopping && (images < 0 || newest < images) && source.waitForImage(newest, image)) {
        if (stopping)
            return;
        take(image, newest, started);
        newest = image.number;
    }
}

void DisplayScene::State::take(const Image& image, std::int64_t previous, Clock::time_point started)
{
    {
        const std::lock_guard lock(mutex);
        statistics.received = image.number;
        statistics.skipped += image.number - previous - 1;
        arrived = Clock::now();
        statistics.seconds = secondsBetween(started, arrived);
        rate.add(image.number - previous,
                 (image.number - previous) * static_cast<std::int64_t>(image.bytes()), arrived);
    }
    show(image);
}

void DisplayScene::State::show(const Image& image)
{
    DisplaySceneVisualizer* present = nullptr;
    {
        const std::lock_guard lock(mutex);
        if (!visualizer)
            return;
        present = visualizer;
        showing = true;
        ++showCount;
        ++statistics.shown;
    }
    try {
        present->showImage(image);
    } catch (const std::exception& error) {
        log(LogLevel::Error, "Showing an image of DMA " + std::to_string(dma) + " failed: " + error.what());
    } catch (...) {
        log(LogLevel::Error, "Showing an image of DMA " + std::to_string(dma) + " failed");
    }
    const std::lock_guard lock(mutex);
    showing = false;
    showingEnded.notify_all();
}

AcquisitionStatus DisplayScene::State::status() const
{
    const auto source = group();
    AcquisitionStatus present;
    if (source) {
        present = source->acquisitionStatus();
        present.dma = static_cast<int>(source->dmaIndex());
    }
    const std::lock_guard lock(mutex);
    if (lastEnd.state != AcquisitionState::Stopped || !source)
        return lastEnd;
    if (!grabbing)
        present.state = AcquisitionState::Stopped;
    return present;
}

// Under the lock.
AcquisitionCounters DisplayScene::State::sinceStart() const
{
    return {statistics.received, statistics.shown, statistics.skipped, lost};
}

AcquisitionFigures DisplayScene::State::figures()
{
    countLostNow();
    const std::lock_guard lock(mutex);
    const auto now = Clock::now();
    const auto perSecond = rate.perSecond(now);
    AcquisitionFigures figures;
    figures.sinceStart = sinceStart();
    figures.sinceBoardStart = earlier + figures.sinceStart;
    figures.imagesPerSecond = perSecond.images;
    figures.bytesPerSecond = perSecond.bytes;
    if (statistics.received > 0)
        figures.newestAgeSeconds = secondsBetween(arrived, now);
    return figures;
}

// A visualizer that stops its own scene would deadlock.
void DisplayScene::State::refuseGrabber(const char* operation) const
{
    if (grabberId.load() == std::this_thread::get_id())
        throw std::logic_error(std::string("DisplayScene::") + operation +
                               " must not be called by its visualizer");
}

DisplayScene::DisplayScene() : m_state(std::make_unique<State>()) {}

DisplayScene::~DisplayScene()
{
    try {
        const std::lock_guard lock(m_state->control);
        m_state->stop();
    } catch (const std::exception& error) {
        log(LogLevel::Error, std::string("A display scene could not be stopped: ") + error.what());
    }
}

boost::shared_ptr<DisplayScene> DisplayScene::create()
{
    probe("DisplayScene::create");
    return reference::liveObject(new DisplayScene);
}

void DisplayScene::addFrameBufferGroup(int position, const boost::shared_ptr<FrameBufferGroup>& group)
{
    probe("DisplayScene::addFrameBufferGroup", "position=", position);
    m_state->refuseGrabber("addFrameBufferGroup");
    const std::lock_guard lock(m_state->control);
    if (position == 0)
        m_state->stop();
    m_state->setGroup(position, group);
}

void DisplayScene::removeFrameBufferGroup(int position)
{
    probe("DisplayScene::removeFrameBufferGroup", "position=", position, " dma=", m_state->dma);
    m_state->refuseGrabber("removeFrameBufferGroup");
    const std::lock_guard lock(m_state->control);
    if (position == 0)
        m_state->stop();
    m_state->setGroup(position, {});
}

void DisplayScene::setVisualizer(DisplaySceneVisualizer* visualizer)
{
    probe("DisplayScene::setVisualizer", "dma=", m_state->dma, visualizer ? " set" : " null");
    m_state->refuseGrabber("setVisualizer");
    std::unique_lock lock(m_state->mutex);
    m_state->visualizer = visualizer;
    const auto count = m_state->showCount;
    m_state->showingEnded.wait(lock, [&] { return !m_state->showing || m_state->showCount != count; });
}

void DisplayScene::startGrabbing(int images)
{
    probe("DisplayScene::startGrabbing", "dma=", m_state->dma, " images=", images);
    m_state->refuseGrabber("startGrabbing");
    const std::lock_guard lock(m_state->control);
    m_state->stop();
    m_state->start(images);
}

void DisplayScene::stopGrabbing()
{
    probe("DisplayScene::stopGrabbing", "dma=", m_state->dma);
    m_state->refuseGrabber("stopGrabbing");
    const std::lock_guard lock(m_state->control);
    m_state->stop();
}

bool DisplayScene::isGrabbing() const
{
    probe("DisplayScene::isGrabbing", "dma=", m_state->dma);
    return m_state->grabbing;
}

int DisplayScene::width() const
{
    probe("DisplayScene::width", "dma=", m_state->dma);
    const auto group = m_state->group();
    return group ? group->width() : 0;
}

int DisplayScene::height() const
{
    probe("DisplayScene::height", "dma=", m_state->dma);
    const auto group = m_state->group();
    return group ? group->height() : 0;
}

DisplayStatistics DisplayScene::statistics() const
{
    probe("DisplayScene::statistics", "dma=", m_state->dma);
    const std::lock_guard lock(m_state->mutex);
    return m_state->statistics;
}

} // namespace ovra::display

namespace ovra::reference {

const char* textOf(AcquisitionState state)
{
    switch (state) {
    case AcquisitionState::Running:
        return "running";
    case AcquisitionState::WaitingForTrigger:
        return "waiting for trigger";
    case AcquisitionState::NoSignal:
        return "no signal";
    case AcquisitionState::CountReached:
        return "count reached";
    case AcquisitionState::TimedOut:
        return "timed out";
    case AcquisitionState::DeviceLost:
        return "device lost";
    case AcquisitionState::Failed:
        return "failed";
    case AcquisitionState::Stopped:
        break;
    }
    return "stopped";
}

boost::signals2::connection
AcquisitionObserver::connect(const boost::shared_ptr<display::DisplayScene>& scene,
                             const Signal::slot_type& slot)
{
    return scene->m_state->ended.connect(slot);
}

AcquisitionStatus AcquisitionObserver::status(const display::DisplayScene& scene)
{
    return scene.m_state->status();
}

AcquisitionFigures AcquisitionObserver::figures(const display::DisplayScene& scene)
{
    return scene.m_state->figures();
}

} // namespace ovra::reference
