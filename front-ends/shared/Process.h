/// \file
/// What a front end needs of its process; posix/ and win32/ hold one source each.
///
/// Texts are UTF-8.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ovra::frontend {

/// The words behind the program's name.
std::vector<std::string> commandLineArguments(int argumentCount, char** arguments);

/// Sets a variable of the process. Call before other threads start.
void setEnvironmentVariable(const std::string& name, const std::string& value);

/// The operating system with its version, and the processors, in one line.
std::string systemDescription();
/// Empty where they are not known.
std::string userName();
std::string homeFolder();

/// What somebody outside wants of the program.
enum class Signal
{
    Interrupt, ///< Ctrl-C
    Terminate, ///< end: a termination signal, Ctrl-Break
    Hangup,    ///< end: the terminal or the console window is gone
};

/// From now on signals no longer end the process; \p handler is called for each, on a thread of its own, one
/// at a time. A signal that the process was started to ignore stays ignored. Writing to a pipe that nobody
/// reads fails instead of ending the process. Call once, before other threads start.
void handleSignals(std::function<void(Signal)> handler);

/// Ends the process as \p signal would have done. Does not return.
[[noreturn]] void endAtOnce(Signal signal);

} // namespace ovra::frontend
