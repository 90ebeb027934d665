// SPDX-License-Identifier: MIT
/// \file
/// Session: starts the application, executes the user's lines, ends the application.
#pragma once

#include "LineReader.h"
#include "Options.h"

#include <memory>

namespace ovra::console {

class Interrupts;
class LineEditor;
class Printer;

struct SessionInput
{
    std::shared_ptr<LineSource> lines;
    /// At a terminal: reads the lines, with a prompt, and the answers to questions. Null for a script or a
    /// pipe: each line is printed before it is executed, and errors name the line.
    std::shared_ptr<LineEditor> editor;
};

/// Starts the application, executes the lines of \p input, and ends the application in order, even after an
/// error or if the user ends the session. True if there was no error.
bool runSession(const Options& options, Printer& printer, const SessionInput& input, Interrupts& interrupts);

} // namespace ovra::console
