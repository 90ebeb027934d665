/// \file
/// Session: the application from its start to its end, with the user's lines between.
#pragma once

#include "LineReader.h"
#include "Options.h"

namespace ovra::console {

class Printer;

enum class InputKind
{
    Lines,    ///< a script or a pipe: each line is shown before it is carried out, errors tell the line
    Terminal, ///< with a prompt, and questions are asked in place
};

/// Starts the application, carries out the lines of \p input, ends the application, in this order also when
/// something on the way fails or the user interrupts the program. True when there was no error at all.
bool runSession(const Options& options, Printer& printer, const LineSource& input, InputKind kind);

} // namespace ovra::console
