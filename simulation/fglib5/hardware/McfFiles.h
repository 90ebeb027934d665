// SPDX-License-Identifier: MIT
/// \file
/// Configuration files (.mcf): an applet's name and the values of its parameters.
///
///   [Kamerasektion]          or, for a DLL applet,     [fglib5]
///   HapName=SingleArea.hap;                            FileName='legacy-2.so';
///
///   [Applet]
///   GAIN=1.5;
///
///   [DMA0]
///   FG_WIDTH=512;
///
/// A line counts if it is a "[section]" or has a "=" and ends with ";"; all others are comments. Blanks
/// belong to names and values. A value between two ' is the text between them.
#pragma once

#include "hardware/Grabber.h"

#include <filesystem>

namespace simulation {

/// Replaces the file as a whole or not at all. Throws FG_FILE_ERROR.
void saveMcf(const Grabber& grabber, const std::filesystem::path& file);

/// Applies all values or none. Throws FG_FILE_ERROR; FG_INVALID_CONFIGURATION with file, line and reason;
/// FG_ACQUISITION_RUNNING if the image size of a running channel would change.
void loadMcf(Grabber& grabber, const std::filesystem::path& file);

/// The applet file that a configuration names: a path, or a file name in \p installation's folders for the
/// board model. Throws like loadMcf.
std::filesystem::path appletOfMcf(const std::filesystem::path& file,
                                  const std::filesystem::path& installation, const std::string& boardModel);

} // namespace simulation
