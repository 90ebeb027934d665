// SPDX-License-Identifier: MIT
/// \file
/// LineReader: reads lines from an input that may block, while the event loop runs.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ovra::reference {
class Application;
}

namespace ovra::console {

class Interrupts;

enum class LineStatus
{
    Complete,
    End,       ///< end of input
    Cancelled, ///< cancel() was called, or the user discarded the line
};

/// A source of lines.
class LineSource
{
public:
    virtual ~LineSource() = default;

    /// Reads the next line; if cancelled, \p line is the text typed so far. May block. The reader calls it on
    /// its own threads, one call at a time.
    virtual LineStatus read(const std::string& prompt, std::string& line) = 0;
    /// Any thread. Ends the running read, or the next one; false if the source cannot do that.
    virtual bool cancel() { return false; }
};

/// Reads lines with a function that returns false at the end.
class FunctionSource final : public LineSource
{
public:
    explicit FunctionSource(std::function<bool(std::string& line)> function);
    LineStatus read(const std::string& prompt, std::string& line) override;

private:
    const std::function<bool(std::string&)> m_function;
};

/// GUI thread.
class LineReader
{
public:
    LineReader(std::shared_ptr<LineSource> source, Interrupts& interrupts);

    /// Sets the application whose event loop runs during next. It must outlive these calls.
    void serve(reference::Application& application);

    /// Returns the next line without its line end; "" if the user discarded it. Empty at the end of input and
    /// when the user ends the session; a source that cannot be cancelled then stays blocked. The event loop
    /// sleeps until there is work.
    std::optional<std::string> next(const std::string& prompt);

private:
    struct Reading;

    const std::shared_ptr<LineSource> m_source;
    Interrupts& m_interrupts;
    reference::Application* m_application = nullptr;
};

} // namespace ovra::console
