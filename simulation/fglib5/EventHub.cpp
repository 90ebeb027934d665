#include "EventHub.h"

#include "Failure.h"

#include <bit>
#include <utility>

namespace simulation {

namespace {

// Events of one kind that wait for the callbacks. What comes in excess is dropped and counted: a flood of one
// kind neither grows without end nor pushes out the others.
constexpr std::size_t mostQueuedOfAKind = 256;

} // namespace

EventHub::EventHub(std::vector<std::string> names)
    : names_(std::move(names)),
      callbacks_(std::make_shared<const std::vector<Callback>>())
{}

EventHub::~EventHub()
{
    close();
}

std::uint64_t EventHub::maskOf(const std::string& name) const
{
    for (std::size_t i = 0; i < names_.size(); ++i)
        if (names_[i] == name)
            return std::uint64_t{1} << i;
    return 0;
}

const char* EventHub::nameOf(std::uint64_t mask) const
{
    const auto lowest = static_cast<std::size_t>(std::countr_zero(mask));
    return lowest < names_.size() ? names_[lowest].c_str() : nullptr;
}

void EventHub::raise(std::uint64_t mask, FgFrameIndex frame)
{
    if ((active_.load(std::memory_order_relaxed) & mask) == 0)
        return;
    {
        const std::lock_guard lock(mutex_);
        const auto events = mask & active_.load(std::memory_order_relaxed);
        if (closed_ || events == 0)
            return;
        record(events, frame);
    }
    happened_.notify_all();
    arrived_.notify_one();
}

void EventHub::record(std::uint64_t event, FgFrameIndex frame)
{
    const auto age = std::chrono::steady_clock::now() - start_;
    FgEventInfo info{};
    info.mask = event;
    info.timestampNs =
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(age).count());
    info.frame = frame;
    pending_ |= event;
    const auto kind = static_cast<std::size_t>(std::countr_zero(event));
    latest_[kind] = info;
    if (callbacks_->empty())
        return;
    if (queuedOfKind_[kind] == mostQueuedOfAKind) {
        ++dropped_;
        return;
    }
    info.droppedEvents = std::exchange(dropped_, 0U);
    queue_[(firstQueued_ + queued_) % queue_.size()] = info;
    ++queued_;
    ++queuedOfKind_[kind];
}

FgEventInfo EventHub::takeQueued()
{
    const auto info = queue_[firstQueued_];
    firstQueued_ = (firstQueued_ + 1) % queue_.size();
    --queued_;
    --queuedOfKind_[static_cast<std::size_t>(std::countr_zero(info.mask))];
    return info;
}

void EventHub::activate(std::uint64_t mask, bool on)
{
    const std::lock_guard lock(mutex_);
    const auto active = active_.load();
    active_ = on ? active | mask : active & ~mask;
}

void EventHub::clear(std::uint64_t mask)
{
    const std::lock_guard lock(mutex_);
    pending_ &= ~mask;
}

std::uint64_t EventHub::wait(std::uint64_t mask, std::chrono::milliseconds timeout, FgEventInfo* info)
{
    std::unique_lock lock(mutex_);
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    happened_.wait_until(lock, deadline, [&] { return closed_ || (pending_ & mask) != 0; });
    if (closed_)
        throw Failure(FG_INVALID_HANDLE, "The board was freed while an event was waited for");
    const auto events = pending_ & mask;
    if (events == 0)
        throw Failure(FG_TIMEOUT, "No event within " + std::to_string(timeout.count()) + " ms");
    pending_ &= ~events;
    if (info != nullptr)
        *info = latest_[static_cast<std::size_t>(std::countr_zero(events))];
    return events;
}

void EventHub::setCallback(std::uint64_t mask, FgEventCallback callback, void* userData)
{
    std::unique_lock lock(mutex_);
    if (closed_)
        throw Failure(FG_INVALID_HANDLE, "The board has been freed");
    auto callbacks = *callbacks_;
    for (auto& registered : callbacks)
        registered.mask &= ~mask;
    std::erase_if(callbacks, [](const Callback& registered) { return registered.mask == 0; });
    if (callback != nullptr) {
        callbacks.push_back({mask, callback, userData});
        queue_.resize(names_.size() * mostQueuedOfAKind);
        if (!thread_.joinable())
            thread_ = std::thread([this] { run(); });
    }
    callbacks_ = std::make_shared<const std::vector<Callback>>(std::move(callbacks));
    if (std::this_thread::get_id() != thread_.get_id())
        idle_.wait(lock, [this, current = calls_] { return !calling_ || calls_ != current; });
}

void EventHub::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        arrived_.wait(lock, [&] { return closed_ || queued_ > 0; });
        if (closed_)
            return;
        const auto info = takeQueued();
        const auto callbacks = callbacks_;
        calling_ = true;
        ++calls_;
        lock.unlock();
        for (const auto& callback : *callbacks)
            if ((callback.mask & info.mask) != 0)
                callback.function(info.mask, callback.userData, &info);
        lock.lock();
        calling_ = false;
        idle_.notify_all();
    }
}

void EventHub::close()
{
    {
        const std::lock_guard lock(mutex_);
        if (thread_.get_id() == std::this_thread::get_id())
            throw Failure(FG_INVALID_ARGUMENT, "A board cannot be freed from within its event callback");
        closed_ = true;
    }
    happened_.notify_all();
    arrived_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

} // namespace simulation
