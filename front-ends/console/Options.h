// SPDX-License-Identifier: MIT
/// \file
/// The program's command line.
#pragma once

#include "front-ends/shared/SessionOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace ovra::console {

struct Options
{
    frontend::SessionOptions session;
    std::string script; ///< path; empty: none
    bool json = false;  ///< prints JSON objects instead of sentences
};

/// Parses \p arguments, without the program's name. Empty if the program has to end, with \p exitCode: after
/// --help, or for an invalid argument.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

} // namespace ovra::console
