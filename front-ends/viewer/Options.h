// SPDX-License-Identifier: MIT
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

/// \p arguments do not include the program's name. Returns nothing if the program should end now with
/// \p exitCode.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

} // namespace ovra::viewer
