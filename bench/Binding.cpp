// SPDX-License-Identifier: MIT
// The cost of the run-time binding of the frame-grabber runtime.

#include "Ratios.h"

#include "fglib/EntryTable.h"
#include "platform/Paths.h"
#include "platform/SharedLibrary.h"

#include "fglib5/Fglib5.h"

#include <cstdlib>
#include <iterator>

using namespace ovra::gui::fglib;

namespace {

constexpr const char* SYMBOLS[] = {
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) symbol,
#define FGLIB5_SECOND_LOOKUP(name) #name,
#include "fglib5/Fglib5Entries.inc"
};

SharedLibrary openBenchRuntime()
{
    constexpr bool FREE_ON_DESTRUCTION = false;
    return {ovra::templates::platform::runtimeLibraryPath(OVRA_BENCH_INSTALLATION, "fglib5"),
            FREE_ON_DESTRUCTION};
}

void* located(const char* symbol)
{
    SharedLibrary library = openBenchRuntime();
    library.load();
    if (void* const found = library.locate(symbol))
        return found;
    std::abort();
}

// The runtime's function does nearly nothing, so that the forwarder dominates.
void forwardedCall(benchmark::State& state)
{
    bindFglib(OVRA_BENCH_INSTALLATION);
    for (auto _ : state)
        benchmark::DoNotOptimize(Fg_getLastErrorNumber(nullptr));
}

void directCall(benchmark::State& state)
{
    using Entry = int (*)(Fg_Struct*);
    static const volatile Entry ENTRY = reinterpret_cast<Entry>(located("Fg_getLastErrorNumber"));
    for (auto _ : state)
        benchmark::DoNotOptimize(ENTRY(nullptr));
}

void bindAll(benchmark::State& state)
{
    for (auto _ : state)
        bindFglib(OVRA_BENCH_INSTALLATION);
}

void openAndLookUpAll(benchmark::State& state)
{
    static void* found[std::size(SYMBOLS)];
    for (auto _ : state) {
        SharedLibrary library = openBenchRuntime();
        library.load();
        for (std::size_t i = 0; i < std::size(SYMBOLS); ++i)
            found[i] = library.locate(SYMBOLS[i]);
        benchmark::DoNotOptimize(found);
    }
}

} // namespace

RATIO("forwarded call / direct call", forwardedCall, directCall, 1.20);
RATIO("binding all entries / opening and bare look-ups", bindAll, openAndLookUpAll, 1.05);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
