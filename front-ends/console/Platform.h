/// \file
/// What the console needs of the operating system; posix/ and win32/ hold one source each.
///
/// Texts are UTF-8.
#pragma once

#include <string>
#include <vector>

namespace ovra::console {

/// The words behind the program's name.
std::vector<std::string> commandLineArguments(int argumentCount, char** arguments);

bool inputIsTerminal();
bool outputIsTerminal();

/// Makes the terminal show UTF-8 until the program ends.
void prepareTerminal();

/// Reads a line from standard input, without its end; false at the end of input.
bool readInputLine(std::string& line);

/// From now on the first wish to end the program (Ctrl-C, and what comes beside it on the platform) is noted,
/// and the next one ends it at once.
void noteInterrupts();
/// Any thread. Whether there was such a wish.
bool interrupted();

/// Sets a variable of the process. Call before other threads start.
void setEnvironmentVariable(const std::string& name, const std::string& value);

} // namespace ovra::console
