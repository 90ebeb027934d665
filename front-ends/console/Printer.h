// SPDX-License-Identifier: MIT
/// \file
/// Printer: writes all output of the console.
#pragma once

#include "Fields.h"

#include "front-ends/shared/RecentMessages.h"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

namespace ovra::console {

/// Writes whole lines, one at a time. Any thread. Counts errors, which determine the exit code.
class Printer
{
public:
    enum class Target
    {
        Lines,    ///< a pipe or a file: progress is printed as lines
        Terminal, ///< progress is in the bottom line, which later output replaces
        Objects,  ///< a program: each line is a JSON object, errors and warnings among them
    };

    /// Prints text above the line that the user types; false if no line is being read.
    using AbovePrompt = std::function<bool(const std::string& text)>;

    /// The streams must outlive the printer.
    Printer(std::ostream& output, std::ostream& errors, Target target);

    /// Switches colours on for the two streams. Call before other threads print.
    void setColours(bool output, bool errors);
    bool hasColours() const { return m_outputColours; }
    /// Sets a function that is called first for each line; for lines of the error stream only with \p
    /// errorsToo. Empty: none.
    void setAbovePrompt(AbovePrompt abovePrompt, bool errorsToo);

    void line(const std::string& text);
    /// Prints \p sentence as a line; for a program, a JSON object with the field "type" and \p fields
    /// instead.
    void result(const char* type, const Fields& fields, const std::string& sentence);
    /// Shows the current activity.
    void progress(const std::string& text);
    /// Prints lines that replace those of the previous call, if the terminal can; \p first starts a new
    /// block.
    void redraw(const std::vector<std::string>& lines, bool first);
    /// Like progress, but not printed if progress would be a line.
    void status(const std::string& text);
    /// Erases the progress.
    void endProgress();

    void warning(const std::string& text);
    /// Prints "error: <place>: <text>" as one line and counts it. Line breaks in \p text become blanks.
    void error(const std::string& text);
    std::size_t errorCount() const;
    /// Errors and warnings with their times, the oldest first.
    std::vector<std::string> recentErrors() const { return m_recentErrors.all(); }
    /// False once something could not be written.
    bool canWrite() const;

    /// Sets the current place of the session, such as "line 7"; empty: none.
    void setPlace(const std::string& place);

    Target target() const { return m_target; }

private:
    void write(const std::string& text);
    void writeObject(const char* type, const Fields& fields);
    void writeMessage(const char* kind, const char* colour, const std::string& text);
    void eraseProgress();

    mutable std::mutex m_mutex;
    std::ostream& m_output;
    std::ostream& m_errors;
    const Target m_target;
    bool m_outputColours = false;
    bool m_errorColours = false;
    AbovePrompt m_abovePrompt;
    bool m_errorsAbovePrompt = false;
    std::string m_place;
    std::size_t m_progressWidth = 0;
    std::size_t m_errorCount = 0;
    frontend::RecentMessages m_recentErrors{100};
};

} // namespace ovra::console
