// SPDX-License-Identifier: MIT
#include "ovra_log/OvraLog.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/Log.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace {

using ovra::reference::probe;

struct Listener
{
    tOvraLogMessageCallback callback;
    void* userData;
    int running = 0; // number of running calls, on all threads
};

struct Dispatch
{
    std::mutex mutex;
    std::condition_variable callEnded;
    int starts = 0;
    std::shared_ptr<Listener> listener;
};

// Never destroyed: threads that still run at the end of the process log.
Dispatch& theDispatch()
{
    static auto* dispatch = new Dispatch;
    return *dispatch;
}

// Threads are numbered in the order in which they first log: short to read, and the same on every platform.
unsigned long threadNumber()
{
    static std::atomic<unsigned long> last{0};
    thread_local const unsigned long NUMBER = ++last;
    return NUMBER;
}

// One call of the callback. While it exists, OvraLogSetMessageCallback waits.
class ListenerCall
{
public:
    ListenerCall()
    {
        Dispatch& dispatch = theDispatch();
        const std::lock_guard lock(dispatch.mutex);
        if (dispatch.starts == 0 || !dispatch.listener)
            return;
        m_listener = dispatch.listener;
        ++m_listener->running;
    }

    ~ListenerCall()
    {
        if (!m_listener)
            return;
        Dispatch& dispatch = theDispatch();
        const std::lock_guard lock(dispatch.mutex);
        --m_listener->running;
        dispatch.callEnded.notify_all();
    }

    ListenerCall(const ListenerCall&) = delete;
    ListenerCall& operator=(const ListenerCall&) = delete;

    const Listener* listener() const { return m_listener.get(); }

private:
    std::shared_ptr<Listener> m_listener;
};

/// Compilers give the whole path on the machine where the caller was built.
const char* withoutFolder(const char* file)
{
    if (!file)
        return "";
    const auto folder = std::string_view(file).find_last_of("/\\");
    return folder == std::string_view::npos ? file : file + folder + 1;
}

void deliver(unsigned long level, const char* file, unsigned int line, const char* text,
             unsigned int tagCount, const tOvraLogTag* tags)
{
    const ListenerCall call;
    if (const Listener* listener = call.listener())
        listener->callback(level, threadNumber(), withoutFolder(file), line, text, tagCount, tags,
                           listener->userData);
}

} // namespace

void OvraLogInit()
{
    probe("OvraLogInit");
    Dispatch& dispatch = theDispatch();
    const std::lock_guard lock(dispatch.mutex);
    ++dispatch.starts;
}

void OvraLogDeinit()
{
    {
        Dispatch& dispatch = theDispatch();
        const std::lock_guard lock(dispatch.mutex);
        if (dispatch.starts > 0)
            --dispatch.starts;
    }
    probe("OvraLogDeinit");
}

void OvraLogSetMessageCallback(tOvraLogMessageCallback callback, void* userData)
{
    probe("OvraLogSetMessageCallback", callback ? "set" : "null");
    std::shared_ptr<Listener> next;
    if (callback)
        next = std::make_shared<Listener>(Listener{callback, userData});

    Dispatch& dispatch = theDispatch();
    std::unique_lock lock(dispatch.mutex);
    dispatch.listener.swap(next);
    if (next)
        dispatch.callEnded.wait(lock, [&] { return next->running == 0; });
}

void OvraLogMessage(unsigned long level, const char* file, unsigned int line, const char* text,
                    unsigned int tagCount, const tOvraLogTag* tags)
{
    probe("OvraLogMessage", "level=", level, ' ', text);
    deliver(level, file, line, text, tagCount, tags);
}

void ovra::reference::log(LogLevel level, const std::string& text, std::source_location place) noexcept
{
    try {
        deliver(static_cast<unsigned long>(level), place.file_name(), place.line(), text.c_str(), 0, nullptr);
    } catch (...) {
        // The caller may be unable to handle an exception, and there is no other place to report it.
    }
}
