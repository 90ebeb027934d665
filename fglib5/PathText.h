/// \file
/// Paths from their texts, which are UTF-8 in the runtime's interface and in the host's. (From a narrow text
/// alone, a path would be made as the C run-time library's locale has it.)
#pragma once

#include <filesystem>
#include <string>

namespace fglib5 {

/// Throws std::filesystem::filesystem_error where \p text is no UTF-8 and the platform's paths are not bytes.
inline std::filesystem::path pathOf(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}

} // namespace fglib5
