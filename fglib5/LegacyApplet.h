/// \file
/// What an applet library of the oldest kind exports: one function, which is asked for the applet's layout.
#pragma once

inline constexpr const char* LEGACY_INFO_NAME = "Info";

/// Queries of LegacyInfoFunction.
enum LegacyQuery : int
{
    LEGACY_CHANNELS = 1888, ///< number of camera channels; none when 0 or less
    LEGACY_MEDIUM = 3072,   ///< not 0: the camera interface is Camera Link medium
    LEGACY_FULL = 3328,     ///< not 0: Camera Link full
};

extern "C" {

/// Answers \p query; the other arguments are 0.
using LegacyInfoFunction = int(int query, int, int, int, int);

} // extern "C"
