/// \file
/// Session: the application from its start to its end, with the user's lines between.
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
    /// Where lines are typed: a prompt is shown, questions are asked in place. Null for a script or a pipe:
    /// each line is shown before it is carried out, errors tell the line.
    std::shared_ptr<LineEditor> editor;
};

/// Starts the application, carries out the lines of \p input, ends the application, in this order also when
/// something on the way fails or the user ends the session. True when there was no error at all.
bool runSession(const Options& options, Printer& printer, const SessionInput& input, Interrupts& interrupts);

} // namespace ovra::console
