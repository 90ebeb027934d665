#include "LineReader.h"

#include "Interrupts.h"

#include "ovra-core/reference/Application.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ovra::console {

/// One call of the source. Shared with its thread, which outlives a wait that was given up.
struct LineReader::Reading
{
    std::mutex mutex;
    std::function<void()> wakeUp; ///< empty once nobody waits
    std::optional<std::string> line;
    std::atomic<bool> done{false};

    void read(const LineSource& source)
    {
        std::string text;
        const bool complete = source(text);
        if (text.ends_with('\r')) // a script that was written on the other platform
            text.pop_back();
        const std::lock_guard lock(mutex);
        if (complete)
            line = std::move(text);
        done = true;
        if (wakeUp)
            wakeUp();
    }

    void abandon()
    {
        const std::lock_guard lock(mutex);
        wakeUp = nullptr;
    }
};

LineReader::LineReader(LineSource source) : m_source(std::move(source)) {}

void LineReader::serve(reference::Application& application)
{
    m_application = &application;
}

std::optional<std::string> LineReader::next()
{
    const auto reading = std::make_shared<Reading>();
    reading->wakeUp = [application = m_application] { application->quit(); };
    onInterrupt(reading->wakeUp);
    std::thread thread([source = m_source, reading] { reading->read(source); });

    while (!reading->done && !interrupted())
        m_application->exec();
    onInterrupt(nullptr);
    if (!reading->done) {
        reading->abandon();
        thread.detach();
        return std::nullopt;
    }
    thread.join();
    return std::move(reading->line);
}

} // namespace ovra::console
