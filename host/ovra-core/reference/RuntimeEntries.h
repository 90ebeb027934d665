/// \file
/// The frame-grabber runtime as the host libraries use it: opened by its full path when it is first needed,
/// once for an application, and not closed while the process lives.
#pragma once

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5Types.h"
#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::reference {

/// The runtime's entries. Those that the host uses are never null, but for the camera control, which a
/// runtime may lack as a whole: see hasCameraControl.
struct RuntimeEntries
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result(*name) parameters = nullptr;
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) name##_t* name = nullptr;
#include "fglib5/CameraControl.inc"

    bool hasCameraControl = false;

    /// Performs a step of a rehearsal; of a virtual installation's runtime alone, null in any other.
    int (*FgSim_perform)(const char* step, char* answer, std::size_t answerBytes) = nullptr;
};

/// Any thread. Empty when there is no application, or no usable runtime.
OVRA_CORE_API boost::shared_ptr<const RuntimeEntries> runtime();

/// Any thread. As runtime(), but throws std::runtime_error with the file and the reason.
OVRA_CORE_API boost::shared_ptr<const RuntimeEntries> requireRuntime();

/// "what: description (code)".
OVRA_CORE_API std::string failureText(const RuntimeEntries& runtime, const std::string& what, int code);
/// The description of what failed last on this thread.
OVRA_CORE_API std::string lastFailureText(const RuntimeEntries& runtime);

} // namespace ovra::reference
