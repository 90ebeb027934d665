// What the library's life costs: loggers while logging is off, initialisation rounds, loading and unloading.

#include "Ratios.h"

#include "logging/Logging.h"
#include "platform/Module.h"
#include "platform/SharedLibrary.h"

#include "gui-core/EntryPoints.h"

#include "ovra-core/EntryPoints.h"
#include "ovra-lib-display-fglib/EntryPoints.h"
#include "ovra-lib-display/EntryPoints.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-fglib-model/EntryPoints.h"
#include "ovra-lib-parameters/EntryPoints.h"

#include <atomic>
#include <cstdlib>

namespace {

using ovra::tools::logging::Logging;

// No dispatcher is found from here, so every logger is the silent one.
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

/// A library that is loaded, and unloaded with the object.
struct Loaded : SharedLibrary
{
    explicit Loaded(const char* path) : SharedLibrary(path, true)
    {
        if (!load())
            std::abort();
    }
    void call(const char* function) const { reinterpret_cast<void (*)()>(locate(function))(); }
};

/// Ends the program where the library stays although it was unloaded: the loop would measure nothing.
void insistOnUnloading(const char* path, const char* function)
{
    const void* const inside = Loaded(path).locate(function);
    char file[1024];
    if (!inside || ovra::templates::platform::moduleFileName(inside, file, sizeof(file)) != 0)
        std::abort();
}

// The host's libraries are loaded already, as in a host.
void loadInitDeinitUnload(benchmark::State& state)
{
    insistOnUnloading(OVRA_GUI_CORE_FILE, "OvraGuiCoreInit");
    for (auto _ : state) {
        const Loaded library(OVRA_GUI_CORE_FILE);
        library.call("OvraGuiCoreInit");
        library.call("OvraGuiCoreDeinit");
    }
}

void loadUnloadEmpty(benchmark::State& state)
{
    insistOnUnloading(OVRA_EMPTY_LIBRARY, "nothing");
    for (auto _ : state)
        const Loaded library(OVRA_EMPTY_LIBRARY);
}

} // namespace

RATIO("silent getLogger and isEnabled / two atomic operations", askSilentLogger, twoAtomicOperations, 0);
RATIO("init and deinit / the host's own twelve calls", initDeinit, hostAlone, 0);
RATIO("load, init, deinit, unload / an empty library", loadInitDeinitUnload, loadUnloadEmpty, 0);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
