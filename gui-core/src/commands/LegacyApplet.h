/// \file
/// Asks an applet library of the oldest kind for its layout.
#pragma once

#include "commands/AppletStructure.h"

#include <optional>

class SharedLibrary;

namespace ovra::gui::commands {

/// What the applet's own entry answers; empty when the library has no such entry.
std::optional<LegacyLayout> askLegacyApplet(const SharedLibrary& applet);

} // namespace ovra::gui::commands
