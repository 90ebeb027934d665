/// \file
/// The program's command line.
#pragma once

#include "front-ends/shared/SessionOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace ovra::viewer {

struct Options
{
    frontend::SessionOptions session;
    unsigned short port = 8642;
    bool openBrowser = true;
};

/// \p arguments are the words behind the program's name. Empty when the program has done all it should: \p
/// exitCode says how it ended.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

} // namespace ovra::viewer
