/// \file
/// Printer: all that the console says goes through here.
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

/// Writes whole lines, one at a time, from any thread. Keeps count of the errors, which decide on the exit
/// code.
class Printer
{
public:
    enum class Target
    {
        Lines,    ///< a pipe or a file: progress comes as lines too
        Terminal, ///< progress stands in the bottom line and makes way for what follows
        Objects,  ///< a program: each line is a JSON object, errors and warnings among them
    };

    /// Takes text that is to appear above a line which the user types; false when nobody types.
    using AbovePrompt = std::function<bool(const std::string& text)>;

    /// The streams must outlive the printer.
    Printer(std::ostream& output, std::ostream& errors, Target target);

    /// Whether the two streams take colours. Call before other threads print.
    void setColours(bool output, bool errors);
    bool hasColours() const { return m_outputColours; }
    /// Asked first for each line, those for the errors' stream only with \p errorsToo; empty: nobody is.
    void setAbovePrompt(AbovePrompt abovePrompt, bool errorsToo);

    void line(const std::string& text);
    /// As line; a program gets an object with the field "type" and \p fields instead.
    void result(const char* type, const Fields& fields, const std::string& sentence);
    /// What is going on at the moment.
    void progress(const std::string& text);
    /// Lines that take the place of those of the call before, where the terminal can; \p first begins anew.
    void redraw(const std::vector<std::string>& lines, bool first);
    /// As progress, but of passing interest: nothing where progress would be a line.
    void status(const std::string& text);
    /// Takes progress off the terminal.
    void endProgress();

    void warning(const std::string& text);
    /// Prints "error: <place>: <text>" as one line, line breaks in \p text become blanks, and counts it.
    void error(const std::string& text);
    std::size_t errorCount() const;
    /// Errors and warnings, the oldest first, each behind its time.
    std::vector<std::string> recentErrors() const { return m_recentErrors.all(); }
    /// False once something could not be written.
    bool canWrite() const;

    /// Where the session stands, such as "line 7"; empty for nowhere.
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
