/// \file
/// What the console needs of the terminal; posix/ and win32/ hold one source each.
///
/// Texts are UTF-8.
#pragma once

#include <filesystem>

namespace ovra::console {

bool inputIsTerminal();
bool outputIsTerminal();
bool errorsAreTerminal();

/// Makes the terminal show UTF-8 and colours until the program ends.
void prepareTerminal();

/// Characters of a line of the terminal; 80 where there is none.
int terminalColumns();

/// Where the lines that a user types are kept from one session to the next; empty where the system keeps
/// them.
std::filesystem::path historyFile();

} // namespace ovra::console
