/// \file
/// LineReader: takes lines from an input that may keep them waiting.
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
    End,       ///< no more will come
    Cancelled, ///< cancel() was called, or the user dropped what was typed
};

/// Where lines come from.
class LineSource
{
public:
    virtual ~LineSource() = default;

    /// Gives the next line; what was typed until then when cancelled. May block. Called on threads of the
    /// reader's own, one call at a time.
    virtual LineStatus read(const std::string& prompt, std::string& line) = 0;
    /// Any thread. Ends the read that blocks, or the next one; false where the source cannot.
    virtual bool cancel() { return false; }
};

/// Lines from a function that gives false at the end.
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

    /// The application whose loop runs while a line is waited for. It outlives the calls of next.
    void serve(reference::Application& application);

    /// The next line, without its end; "" for one that the user dropped. Empty at the end of input and when
    /// the user ends the session. A source that cannot be cancelled may then still be blocked, and is left
    /// so. The loop sleeps until there is something to do.
    std::optional<std::string> next(const std::string& prompt);

private:
    struct Reading;

    const std::shared_ptr<LineSource> m_source;
    Interrupts& m_interrupts;
    reference::Application* m_application = nullptr;
};

} // namespace ovra::console
