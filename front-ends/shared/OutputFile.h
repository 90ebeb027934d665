// SPDX-License-Identifier: MIT
/// \file
/// Files that a front end writes for its user.
#pragma once

#include <filesystem>
#include <string_view>

namespace ovra::frontend {

/// Writes \p bytes to a temporary file beside \p file and renames it. If that fails, \p file is unchanged and
/// the temporary file is removed. Throws RequestError with the path and the system's reason.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace ovra::frontend
