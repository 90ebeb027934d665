/// \file
/// Paths from their texts, which are UTF-8 wherever they come from. (From a narrow text alone, a path would
/// be made as the C run-time library's locale has it.)
#pragma once

#include <filesystem>
#include <string>

namespace simulation {

inline std::filesystem::path pathOf(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}

} // namespace simulation
