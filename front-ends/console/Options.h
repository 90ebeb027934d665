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
    std::string script; ///< path; empty where not given
    bool json = false;  ///< objects in place of sentences
};

/// \p arguments are the words behind the program's name. Empty when the program has done all it should: \p
/// exitCode says how it ended.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

} // namespace ovra::console
