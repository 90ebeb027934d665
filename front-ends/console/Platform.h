/// \file
/// What the console needs of the terminal; posix/ and win32/ hold one source each.
///
/// Texts are UTF-8.
#pragma once

#include <string>

namespace ovra::console {

bool inputIsTerminal();
bool outputIsTerminal();

/// Makes the terminal show UTF-8 until the program ends.
void prepareTerminal();

/// Reads a line from standard input, without its end; false at the end of input.
bool readInputLine(std::string& line);

} // namespace ovra::console
