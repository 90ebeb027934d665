// SPDX-License-Identifier: MIT
/// \file
/// The export of an applet library of the oldest kind: one function that describes the applet's layout.
#pragma once

inline constexpr const char* LEGACY_INFO_NAME = "Info";

/// Queries of LegacyInfoFunction.
enum LegacyQuery : int
{
    LEGACY_CHANNELS = 1888, ///< number of camera channels; 0 or less: none
    LEGACY_MEDIUM = 3072,   ///< not 0: the camera interface is Camera Link medium
    LEGACY_FULL = 3328,     ///< not 0: Camera Link full
};

extern "C" {

/// Returns the answer to \p query; the other arguments are 0.
using LegacyInfoFunction = int(int query, int, int, int, int);

} // extern "C"
