// SPDX-License-Identifier: MIT
/// \file
/// Conversion between paths and texts. The program's texts are UTF-8, whatever the platform's narrow
/// encoding.
#pragma once

#include <filesystem>
#include <string>

namespace ovra::frontend {

inline std::filesystem::path pathOf(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}

inline std::string textOf(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace ovra::frontend
