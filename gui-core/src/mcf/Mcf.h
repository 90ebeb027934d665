// SPDX-License-Identifier: MIT
/// \file
/// Configuration files of the frame grabber (MCF), as far as this library needs to know them.
///
///     Width=8;             in the section "none": no header came before
///     [Kamerasektion]      opens the section "Kamerasektion"; "[]" the one without a name
///     HapName='a=b';       the key "HapName" with the value "a=b"
///     Typ = x;             the key "Typ " with the value " x": nothing is trimmed
///     Typ=x                ignored, because the closing ";" is missing, like all that is neither header nor
///     key
///
/// A line ends at a line feed or with the text. A carriage return directly before the line feed is no part of
/// the line, on any platform. Every other byte is itself: zero, Ctrl-Z, other carriage returns, and a
/// byte-order mark, which belongs to the first line.
#pragma once

#include <string>
#include <string_view>

namespace ovra::gui::mcf {

/// The bytes of \p path, which others may have open, also for writing. Empty when that is no readable file.
/// Blocks while it reads. Throws std::bad_alloc.
std::string readMcf(const std::string& path);

/// The last value that \p text gives \p key under any header of \p section; a view into the text. Empty also
/// when there is no such section or key. Takes time in proportion to the text.
std::string_view mcfValue(std::string_view text, std::string_view section, std::string_view key);

} // namespace ovra::gui::mcf
