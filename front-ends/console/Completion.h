/// \file
/// What the word that a user types may become.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ovra::console {

/// Where the last word of \p line begins, a quote that opens it included.
std::size_t lastWordOf(const std::string& line);

/// What the last word of \p line may become: commands, and as the command's usage has it boards, DMA
/// channels, applets, parameters, fixed words, files. Sorted. Files with relative names lie in \p folder. GUI
/// thread.
std::vector<std::string> completionsOf(const std::string& line, const std::filesystem::path& folder);

} // namespace ovra::console
