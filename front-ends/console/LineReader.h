/// \file
/// LineReader: takes lines from an input that may keep them waiting.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace ovra::reference {
class Application;
}

namespace ovra::console {

/// Gives the next line; false at the end. May block. Called on threads of its own, one call at a time.
using LineSource = std::function<bool(std::string& line)>;

/// GUI thread.
class LineReader
{
public:
    explicit LineReader(LineSource source);

    /// The application whose loop runs while a line is waited for. It outlives the calls of next.
    void serve(reference::Application& application);

    /// The next line, without its end; empty at the end of input and when the user interrupts the program.
    /// The source may then still be blocked, and is left so.
    std::optional<std::string> next();

private:
    struct Reading;

    const LineSource m_source;
    reference::Application* m_application = nullptr;
};

} // namespace ovra::console
