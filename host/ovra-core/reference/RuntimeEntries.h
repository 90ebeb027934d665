// SPDX-License-Identifier: MIT
/// \file
/// The frame-grabber runtime as the host libraries use it. Each application opens it once, by its full path,
/// when it first needs it. The runtime stays open until the process ends.
#pragma once

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5Types.h"
#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::reference {

/// The runtime's entries. Those that the host uses are never null. A runtime may lack the camera control as
/// a whole: see hasCameraControl.
struct RuntimeEntries
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result(*name) parameters = nullptr;
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) name##_t* name = nullptr;
#include "fglib5/CameraControl.inc"

    bool hasCameraControl = false;

    /// Performs a step of a rehearsal. Only the virtual installation has it; null for any other runtime.
    int (*FgSim_perform)(const char* step, char* answer, std::size_t answerBytes) = nullptr;
};

/// Any thread. Empty if there is no application, or no usable runtime.
OVRA_CORE_API boost::shared_ptr<const RuntimeEntries> runtime();

/// Any thread. Like runtime(), but never empty.
/// \throws std::runtime_error  with the file and the reason
OVRA_CORE_API boost::shared_ptr<const RuntimeEntries> requireRuntime();

/// "what: description (code)".
OVRA_CORE_API std::string failureText(const RuntimeEntries& runtime, const std::string& what, int code);
/// The runtime's description of the last failure on this thread.
OVRA_CORE_API std::string lastFailureText(const RuntimeEntries& runtime);

} // namespace ovra::reference
