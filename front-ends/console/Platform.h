// SPDX-License-Identifier: MIT
/// \file
/// Functions for the terminal; posix/ and win32/ contain one source each.
///
/// Texts are UTF-8.
#pragma once

#include <filesystem>

namespace ovra::console {

bool inputIsTerminal();
bool outputIsTerminal();
bool errorsAreTerminal();

/// Switches the terminal to UTF-8 and colours until the program ends.
void prepareTerminal();

/// Width of the terminal in characters; 80 without a terminal.
int terminalColumns();

/// File that keeps the user's lines between sessions; empty if the system keeps them.
std::filesystem::path historyFile();

} // namespace ovra::console
