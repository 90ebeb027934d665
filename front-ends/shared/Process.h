// SPDX-License-Identifier: MIT
/// \file
/// Arguments, environment, user and signals of the process; posix/ and win32/ contain one source each.
///
/// Texts are UTF-8.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ovra::frontend {

/// The arguments after the program's name.
std::vector<std::string> commandLineArguments(int argumentCount, char** arguments);

/// Sets an environment variable. Call before other threads start.
void setEnvironmentVariable(const std::string& name, const std::string& value);

/// Name and version of the operating system, and the processors, in one line.
std::string systemDescription();
/// Empty if unknown.
std::string userName();
std::string homeFolder();

/// Requests from outside to end the program.
enum class Signal
{
    Interrupt, ///< Ctrl-C
    Terminate, ///< a termination signal, Ctrl-Break
    Hangup,    ///< the terminal or the console window was closed
};

/// Calls \p handler for each signal, on a thread of its own, one at a time; signals no longer end the
/// process. Signals that the process inherited as ignored stay ignored. Writing to a closed pipe fails
/// instead of ending the process. Call once, before other threads start.
void handleSignals(std::function<void(Signal)> handler);

/// Ends the process like an unhandled \p signal. Does not return.
[[noreturn]] void endAtOnce(Signal signal);

} // namespace ovra::frontend
