/// \file
/// Printer: all that the console says goes through here.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <string>

namespace ovra::console {

/// Writes whole lines, one at a time, from any thread. Keeps count of the errors, which decide on the exit
/// code.
class Printer
{
public:
    enum class Target
    {
        Lines,    ///< a pipe or a file: progress comes as lines too
        Terminal, ///< progress stands in the bottom line and makes way for what follows
    };

    /// The streams must outlive the printer.
    Printer(std::ostream& output, std::ostream& errors, Target target);

    void line(const std::string& text);
    /// What is going on at the moment.
    void progress(const std::string& text);
    /// As progress, but of passing interest: nothing where progress would be a line.
    void status(const std::string& text);
    /// Takes progress off the terminal.
    void endProgress();
    /// Leaves the cursor behind \p text.
    void prompt(const std::string& text);

    void warning(const std::string& text);
    /// Prints "error: <place>: <text>" as one line, line breaks in \p text become blanks, and counts it.
    void error(const std::string& text);
    std::size_t errorCount() const;

    /// Where the session stands, such as "line 7"; empty for nowhere.
    void setPlace(const std::string& place);

private:
    void writeMessage(const char* kind, const std::string& text);
    void eraseProgress();

    mutable std::mutex m_mutex;
    std::ostream& m_output;
    std::ostream& m_errors;
    const Target m_target;
    std::string m_place;
    std::size_t m_progressWidth = 0;
    std::size_t m_errorCount = 0;
};

} // namespace ovra::console
