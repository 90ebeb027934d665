// What the run-time binding of the frame-grabber runtime costs.

#include "Ratios.h"

#include "fglib/EntryTable.h"
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

SharedLibrary& openBenchRuntime()
{
    static SharedLibrary library(OVRA_BENCH_RUNTIME, false);
    if (!library.load())
        std::abort();
    return library;
}

void* locate(const void* library, const char* symbol)
{
    return static_cast<const SharedLibrary*>(library)->locate(symbol);
}

// The runtime's function does next to nothing, so that what surrounds it shows.
void forwardedCall(benchmark::State& state)
{
    resolveEntries(&locate, &openBenchRuntime());
    for (auto _ : state)
        benchmark::DoNotOptimize(Fg_getLastErrorNumber(nullptr));
}

void directCall(benchmark::State& state)
{
    using Entry = int (*)(Fg_Struct*);
    static const volatile Entry ENTRY =
        reinterpret_cast<Entry>(openBenchRuntime().locate("Fg_getLastErrorNumber"));
    for (auto _ : state)
        benchmark::DoNotOptimize(ENTRY(nullptr));
}

void bindAll(benchmark::State& state)
{
    SharedLibrary& library = openBenchRuntime();
    for (auto _ : state)
        resolveEntries(&locate, &library);
}

void lookUpAll(benchmark::State& state)
{
    static void* found[std::size(SYMBOLS)];
    SharedLibrary& library = openBenchRuntime();
    for (auto _ : state) {
        for (std::size_t i = 0; i < std::size(SYMBOLS); ++i)
            found[i] = library.locate(SYMBOLS[i]);
        benchmark::DoNotOptimize(found);
    }
}

} // namespace

RATIO("forwarded call / direct call", forwardedCall, directCall, 1.20);
RATIO("binding all entries / bare look-ups", bindAll, lookUpAll, 1.05);

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
