/// \file
/// Session: the program from its start to its end.
#pragma once

#include "Options.h"

namespace ovra::viewer {

/// Starts the server, then the application, and serves pages until one of them or a signal ends the program.
/// True when it ended in order.
bool runSession(const Options& options);

} // namespace ovra::viewer
