// What the library's life costs: loggers while logging is off, initialisation rounds, loading and unloading.

#include "Ratios.h"

#include "platform/Logging.h"

#include "gui-core/EntryPoints.h"

#include "ovra-core/EntryPoints.h"
#include "ovra-lib-display-fglib/EntryPoints.h"
#include "ovra-lib-display/EntryPoints.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-fglib-model/EntryPoints.h"
#include "ovra-lib-parameters/EntryPoints.h"

#include <atomic>
#include <cstdlib>
#include <dlfcn.h>

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

void* load(const char* path)
{
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        std::abort();
    return library;
}

void unload(void* library, const char* path)
{
    dlclose(library);
    if (dlopen(path, RTLD_NOLOAD | RTLD_NOW))
        std::abort(); // still there: the loop would measure nothing
}

// The host's libraries are loaded already, as in a host.
void loadInitDeinitUnload(benchmark::State& state)
{
    for (auto _ : state) {
        void* library = load(OVRA_GUI_CORE_FILE);
        reinterpret_cast<void (*)()>(dlsym(library, "OvraGuiCoreInit"))();
        reinterpret_cast<void (*)()>(dlsym(library, "OvraGuiCoreDeinit"))();
        unload(library, OVRA_GUI_CORE_FILE);
    }
}

void loadUnloadEmpty(benchmark::State& state)
{
    for (auto _ : state)
        unload(load(OVRA_EMPTY_LIBRARY), OVRA_EMPTY_LIBRARY);
}

} // namespace

RATIO("silent getLogger and isEnabled / two atomic operations", askSilentLogger, twoAtomicOperations, 0);
RATIO("init and deinit / the host's own twelve calls", initDeinit, hostAlone, 0);
RATIO("load, init, deinit, unload / an empty library", loadInitDeinitUnload, loadUnloadEmpty, 0);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
