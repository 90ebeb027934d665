// SPDX-License-Identifier: MIT
/// \file
/// AppletType: the kind of an applet file.
#pragma once

namespace ovra::core::models {
class HlEnvironmentFileNode;
}

namespace ovra::gui::model {

enum class AppletType
{
    LegacyDll, ///< a library that reports its layout itself
    Dll,       ///< a library whose layout the runtime knows
    Hap,       ///< a hardware applet; its parameters belong to the applet, not to DMA channels
    Unknown,
};

/// Decides by the file's type, case-sensitively, and its wrapped flag.
AppletType appletType(const core::models::HlEnvironmentFileNode& file);

/// As in "Detected applet type: HAP".
const char* appletTypeName(AppletType type);

} // namespace ovra::gui::model
