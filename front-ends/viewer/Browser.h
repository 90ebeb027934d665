/// \file
/// Opens the user's browser; posix/ and win32/ hold one source each.
#pragma once

#include <string>

namespace ovra::viewer {

/// False when there is none that the system knows of. Does not wait for it.
bool openBrowser(const std::string& address);

} // namespace ovra::viewer
