/// \file
/// Files that a front end writes for its user.
#pragma once

#include <filesystem>
#include <string_view>

namespace ovra::frontend {

/// Puts \p bytes into \p file as a whole: beside it first, then in its place. When that fails, what was there
/// is still there and nothing is left beside it. Throws RequestError with the path and the system's reason.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace ovra::frontend
