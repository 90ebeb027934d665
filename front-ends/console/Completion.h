// SPDX-License-Identifier: MIT
/// \file
/// Completion of the word that the user types.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ovra::console {

/// Position of the last word of \p line, including an opening quote.
std::size_t lastWordOf(const std::string& line);

/// The completions of the last word of \p line, sorted: commands, and according to the command's usage
/// boards, DMA channels, applets, parameters, fixed words, files. Relative file names refer to \p folder. GUI
/// thread.
std::vector<std::string> completionsOf(const std::string& line, const std::filesystem::path& folder);

} // namespace ovra::console
