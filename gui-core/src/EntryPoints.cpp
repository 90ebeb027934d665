// SPDX-License-Identifier: MIT
#include "gui-core/EntryPoints.h"

#include "LibraryInitController.h"
#include "logging/Logging.h"
#include "platform/Thread.h"

#include "ovra-core/EntryPoints.h"
#include "ovra-lib-display-fglib/EntryPoints.h"
#include "ovra-lib-display/EntryPoints.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-fglib-model/EntryPoints.h"
#include "ovra-lib-parameters/EntryPoints.h"

#include <string>

using ovra::gui::LibraryInitController;

namespace {

constexpr std::uint32_t LIBRARY_LINE_LEVEL = 2;

void logUse(const char* step, std::uint32_t useCount)
{
    auto& logger = ovra::tools::logging::Logging::instance().getLogger("guard.library");
    if (!logger.isEnabled(LIBRARY_LINE_LEVEL))
        return;
    const std::string threadId = std::to_string(ovra::templates::platform::currentThreadId());
    logger.log(LIBRARY_LINE_LEVEL,
               "thread-id=" + threadId + "|LIBRARY " + step +
                   ": OvraGuiCore (useCount: " + std::to_string(useCount) + ")",
               0, 0);
}

} // namespace

void OvraGuiCoreInit()
{
    logUse("INIT", LibraryInitController::acquire());

    // Every initialisation starts all of them again; each of them counts.
    LibraryInitController::registerLibrary(&OvraCoreInit, &OvraCoreDeinit);
    LibraryInitController::registerLibrary(&OvraEnvironmentInit, &OvraEnvironmentDeinit);
    LibraryInitController::registerLibrary(&OvraParametersInit, &OvraParametersDeinit);
    LibraryInitController::registerLibrary(&OvraDisplayInit, &OvraDisplayDeinit);
    LibraryInitController::registerLibrary(&OvraDisplayFglibInit, &OvraDisplayFglibDeinit);
    LibraryInitController::registerLibrary(&OvraFglibModelInit, &OvraFglibModelDeinit);
}

void OvraGuiCoreDeinit()
{
    try {
        logUse("DEINIT", LibraryInitController::useCount());
    } catch (...) {
        // A failing log line must not prevent the shut-down.
    }
    LibraryInitController::release();
}
