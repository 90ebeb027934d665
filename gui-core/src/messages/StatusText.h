// SPDX-License-Identifier: MIT
/// \file
/// How a status of the frame-grabber runtime is written for the user.
#pragma once

#include <string>

struct Fg_Struct_s;

namespace ovra::gui::messages {

// The description is the runtime's; "Unknown Error Code" where it has none.

/// "code (description)". \p handle may be null.
std::string codeWithDescription(Fg_Struct_s* handle, int code);

/// "description (code)", for a status that belongs to no board.
std::string descriptionWithCode(int code);

/// As codeWithDescription, for the runtime's last error without a board.
std::string lastErrorWithDescription();

} // namespace ovra::gui::messages
