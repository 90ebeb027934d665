/// \file
/// What the console needs of the operating system; posix/ and win32/ hold one source each.
#pragma once

#include <string>

namespace ovra::console {

bool inputIsTerminal();
bool outputIsTerminal();

/// Makes the terminal take and show UTF-8.
void prepareTerminal();

/// Sets a variable of the process. Call before other threads start.
void setEnvironmentVariable(const std::string& name, const std::string& value);

} // namespace ovra::console
