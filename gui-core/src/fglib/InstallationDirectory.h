// SPDX-License-Identifier: MIT
/// \file
/// The installation directory: the folder whose "bin" holds the runtime libraries.
#pragma once

namespace ovra::gui::fglib {

/// Found once per process: from the location of this library's own file, else from the environment variable
/// OVRADIR5_64, else from OVRADIR5. No separator at the end. Null while it cannot be found; the next call
/// tries again. From then on this library stays in the process: what is opened from the directory may call it
/// back at any time.
///
/// Any thread. The text stays valid and unchanged for the life of the process.
const char* getInstallationDirectory();

} // namespace ovra::gui::fglib
