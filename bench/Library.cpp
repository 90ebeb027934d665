// SPDX-License-Identifier: MIT
// The cost of loggers without a dispatcher, and of starting and ending the library.

#include "Ratios.h"

#include "logging/Logging.h"

#include "gui-core/EntryPoints.h"

#include "ovra-core/EntryPoints.h"
#include "ovra-lib-display-fglib/EntryPoints.h"
#include "ovra-lib-display/EntryPoints.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-fglib-model/EntryPoints.h"
#include "ovra-lib-parameters/EntryPoints.h"

#include <atomic>

namespace {

using ovra::tools::logging::Logging;

// There is no dispatcher, so every logger is the silent one.
void askSilentLogger(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Logging::instance().getLogger("guard.library").isEnabled(2));
}

void twoAtomicOperations(benchmark::State& state)
{
    static std::atomic<std::uint32_t> word{0};
    for (auto _ : state) {
        word.fetch_add(1, std::memory_order_acquire);
        word.fetch_sub(1, std::memory_order_release);
    }
}

void initDeinit(benchmark::State& state)
{
    for (auto _ : state) {
        OvraGuiCoreInit();
        OvraGuiCoreDeinit();
    }
}

void hostAlone(benchmark::State& state)
{
    for (auto _ : state) {
        OvraCoreInit();
        OvraEnvironmentInit();
        OvraParametersInit();
        OvraDisplayInit();
        OvraDisplayFglibInit();
        OvraFglibModelInit();
        OvraCoreDeinit();
        OvraEnvironmentDeinit();
        OvraParametersDeinit();
        OvraDisplayDeinit();
        OvraDisplayFglibDeinit();
        OvraFglibModelDeinit();
    }
}

} // namespace

RATIO("silent getLogger and isEnabled / two atomic operations", askSilentLogger, twoAtomicOperations, 0);
RATIO("init and deinit / the host's own twelve calls", initDeinit, hostAlone, 0);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
