// SPDX-License-Identifier: MIT
/// \file
/// Conversion between paths and texts, which are UTF-8 in the runtime's interface and in the host's. (Without
/// it, std::filesystem::path would read a narrow text in the encoding of the C library's locale.)
#pragma once

#include <filesystem>
#include <string>

namespace fglib5 {

/// \throws std::runtime_error  or a class of it, if \p text is not UTF-8 and the platform's paths are not
/// bytes
inline std::filesystem::path pathOf(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}

} // namespace fglib5
