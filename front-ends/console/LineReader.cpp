// SPDX-License-Identifier: MIT
#include "LineReader.h"

#include "Interrupts.h"

#include "ovra-core/reference/Application.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ovra::console {

/// One call of the source. Shared with its thread, which may outlive an abandoned wait.
struct LineReader::Reading
{
    std::mutex mutex;
    std::function<void()> wakeUp; ///< empty after the wait
    std::string line;
    LineStatus status = LineStatus::End;
    std::atomic<bool> done{false};
    std::atomic<bool> givenUp{false};

    void read(LineSource& source, const std::string& prompt, Interrupts& interrupts)
    {
        const int earlier = interrupts.pending();
        std::string text;
        const LineStatus result = source.read(prompt, text);
        if (result == LineStatus::Complete)
            interrupts.forget(earlier); // a later Ctrl-C counts for the command
        if (text.ends_with('\r'))       // a script with Windows line ends
            text.pop_back();
        const std::lock_guard lock(mutex);
        line = std::move(text);
        status = result;
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

FunctionSource::FunctionSource(std::function<bool(std::string& line)> function)
    : m_function(std::move(function))
{}

LineStatus FunctionSource::read(const std::string&, std::string& line)
{
    return m_function(line) ? LineStatus::Complete : LineStatus::End;
}

LineReader::LineReader(std::shared_ptr<LineSource> source, Interrupts& interrupts)
    : m_source(std::move(source)),
      m_interrupts(interrupts)
{}

void LineReader::serve(reference::Application& application)
{
    m_application = &application;
}

std::optional<std::string> LineReader::next(const std::string& prompt)
{
    const auto reading = std::make_shared<Reading>();
    reading->wakeUp = [application = m_application] { application->quit(); };
    m_interrupts.setWakeUp([reading, source = m_source, application = m_application] {
        reading->givenUp = !source->cancel();
        application->quit();
    });
    if (m_interrupts.sessionEnds()) { // the reason has been printed before
        m_interrupts.setWakeUp(nullptr);
        return std::nullopt;
    }
    std::thread thread([source = m_source, prompt, reading, &interrupts = m_interrupts] {
        reading->read(*source, prompt, interrupts);
    });

    while (!reading->done && !reading->givenUp)
        m_application->exec();
    m_interrupts.setWakeUp(nullptr);
    if (!reading->done) {
        reading->abandon();
        thread.detach();
        return std::nullopt;
    }
    thread.join();
    if (reading->status == LineStatus::End || m_interrupts.sessionEnds())
        return std::nullopt;
    return reading->status == LineStatus::Complete ? std::move(reading->line) : std::string();
}

} // namespace ovra::console
