/// \file
/// Paths from their texts, which are UTF-8 in all of the host's interfaces. (From a narrow text alone, a path
/// would be made as the C run-time library's locale has it.)
#pragma once

#include <filesystem>
#include <string>

namespace ovra::reference {

/// Throws std::filesystem::filesystem_error where \p text is no UTF-8 and the platform's paths are not bytes.
inline std::filesystem::path pathOf(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}

} // namespace ovra::reference
