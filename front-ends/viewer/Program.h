// SPDX-License-Identifier: MIT
/// \file
/// runProgram: runs the viewer from its arguments to its end.
#pragma once

#include "Options.h"

namespace ovra::viewer {

/// Starts the server, then the application, and serves pages until one of them or a signal ends the program.
/// True if it ended normally.
bool runProgram(const Options& options);

} // namespace ovra::viewer
