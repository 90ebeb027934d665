// SPDX-License-Identifier: MIT
/// \file
/// The folder that holds the applets of a board model.
#pragma once

namespace ovra::gui::model {

/// Name of the folder below "Hardware Applets" and "dll"; "unknown" for a type that is not in the table.
const char* appletFolderOf(unsigned int boardType);

} // namespace ovra::gui::model
