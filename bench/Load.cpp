// SPDX-License-Identifier: MIT
// The cost of loading and unloading an applet, by its number of DMA channels.
//
// Measured: both commands through the processor, with their messages, the worker, the model's nodes,
// resources, buffers and scenes, and the search for applets at the end. Yardstick: the same calls of the
// runtime, made directly in the same order and with the same arguments; the runtime's journal proves it.
// Channels have tiny images and there are no cameras, so the runtime spends no time on drawing.
//
// Times are processor time of the whole process, that is of the GUI thread and the worker. They exclude the
// time that one thread waits for the other.

#include "Ratios.h"
#include "SilentViews.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "simulation/fglib5/SimulationControl.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/RuntimeEntries.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <new>
#include <vector>

namespace {

// The program's operator new also serves its shared libraries, including the runtime.
std::atomic<std::int64_t> heapBytes{0};
std::atomic<std::int64_t> heapPeak{0};

} // namespace

// Not inlined, because the compiler would warn of free() for a pointer from new.
[[gnu::noinline]] void* operator new(std::size_t bytes)
{
    void* const memory = std::malloc(bytes);
    if (!memory)
        throw std::bad_alloc();
    const auto size = static_cast<std::int64_t>(malloc_usable_size(memory));
    const std::int64_t now = heapBytes.fetch_add(size, std::memory_order_relaxed) + size;
    if (now > heapPeak.load(std::memory_order_relaxed))
        heapPeak.store(now, std::memory_order_relaxed);
    return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    heapBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(memory)), std::memory_order_relaxed);
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace {

using namespace ovra;
using namespace std::chrono_literals;

constexpr int SERIAL = 1;
constexpr int SIDE = 8; // pixels
constexpr unsigned int BUFFERS = 16;
constexpr const char* MACHINE =
    R"({"name": "measured machine", "boards": [{"model": "m", "boardType": 1, "serial": "1", "ports": 1}], "cameras": []})";

/// One process with as many DMA channels as ports.
std::string appletWith(int channels)
{
    std::string indices;
    std::string descriptions;
    for (int i = 0; i < channels; ++i) {
        const std::string separator = i == 0 ? "" : ", ";
        const std::string index = std::to_string(i);
        const std::string side = std::to_string(SIDE);
        indices += separator + index;
        descriptions +=
            separator + R"({"index": )" + index + R"(, "width": )" + side + R"(, "height": )" + side + "}";
    }
    return R"({"format": "virtual-applet-1", "name": "a", "boardType": 1, "processes": [{"dmas": [)" +
           indices + R"(], "ports": [)" + indices + R"(]}], "dmas": [)" + descriptions + "]}";
}

/// The product on a virtual installation.
class Rig
{
public:
    static Rig& instance()
    {
        static Rig rig;
        return rig;
    }

    ~Rig()
    {
        m_application->stopPlugins();
        m_application.reset();
        OvraGuiCoreDeinit();
        std::filesystem::remove_all(m_folder);
    }

    std::string applet(int channels) const
    {
        return m_folder.generic_string() + "/Hardware Applets/m/" + std::to_string(channels) + ".hap";
    }

    void run(const boost::shared_ptr<core::Command>& command)
    {
        core::HarloApplication::commandprocessor()->executeCommand(command);
        m_application->pumpUntil([this] { return m_application->idle(); }, 60s);
    }

    template <class Function>
    Function* control(const char* name) const
    {
        return reinterpret_cast<Function*>(dlsym(m_runtime, name));
    }

private:
    Rig()
    {
        write("machine.json", MACHINE);
        for (const int channels : {1, 4, 16, 64, 256})
            write("Hardware Applets/m/" + std::to_string(channels) + ".hap", appletWith(channels));
        control<FgSim_setMachine_t>("FgSim_setMachine")((m_folder / "machine.json").c_str());
        OvraGuiCoreInit();
        m_application = std::make_unique<reference::Application>(
            reference::ApplicationOptions{.runtimeDirectory = m_folder.generic_string(),
                                          .runtimeLibrary = OVRA_SIMULATED_RUNTIME,
                                          .configurationFile = ""});
        const auto views = boost::make_shared<bench::SilentViews>();
        m_application->addPlugin(
            boost::shared_ptr<gui::Gui>(gui::Gui::createInstance(), &gui::Gui::destroyInstance),
            {{"views", boost::any(boost::shared_ptr<gui::Views>(views))}});
        m_application->startPlugins();
        m_application->pumpUntil([this] { return m_application->idle(); }, 60s);
    }

    void write(const std::string& path, const std::string& content) const
    {
        std::filesystem::create_directories((m_folder / path).parent_path());
        std::ofstream(m_folder / path) << content;
    }

    const std::filesystem::path m_folder =
        std::filesystem::temp_directory_path() /
        ("ovra-bench-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    void* const m_runtime = dlopen(OVRA_SIMULATED_RUNTIME, RTLD_NOW | RTLD_LOCAL);
    std::unique_ptr<reference::Application> m_application;
};

void loadAndUnload(int channels)
{
    Rig& rig = Rig::instance();
    rig.run(gui::commands::LoadAppletCommand::create(SERIAL, rig.applet(channels), ""));
    rig.run(gui::commands::UnloadAppletCommand::create(SERIAL));
}

void ask(int code)
{
    if (code < FG_OK)
        std::abort(); // the measurement would be void
}

int parameter(const reference::RuntimeEntries& runtime, Fg_Struct* board, int id, int value, unsigned int dma)
{
    ask(runtime.Fg_getParameter(board, id, &value, dma));
    return value;
}

void askSystem(const reference::RuntimeEntries& runtime, FgInfoSelector selector)
{
    std::array<char, 256> text{};
    std::size_t bytes = text.size();
    ask(runtime.Fg_getSystemInformation(nullptr, selector, 0, text.data(), &bytes));
}

int ignoreEvents(std::uint64_t, void*, const FgEventInfo*)
{
    return 0;
}

std::uint64_t registerEvents(const reference::RuntimeEntries& runtime, Fg_Struct* board)
{
    std::uint64_t mask = 0;
    const int count = runtime.Fg_getEventCount(board);
    for (int i = 0; i < count; ++i)
        if (const std::uint64_t bit = std::uint64_t{1} << i; runtime.Fg_getEventName(board, bit))
            mask |= bit;
    ask(runtime.Fg_registerEventCallback(board, mask, &ignoreEvents, nullptr, 0, nullptr));
    return mask;
}

void readStructure(const reference::RuntimeEntries& runtime, Fg_Struct* board)
{
    const int dmas = parameter(runtime, board, FG_NR_OF_DMAS_OF_PROCESS, -1, 0);
    for (int i = 0; i < dmas; ++i)
        parameter(runtime, board, FG_DMA_PORT, i, 0);
    const int ports = parameter(runtime, board, FG_NR_OF_CAMS_OF_PROCESS, -1, 0);
    for (int i = 0; i < ports; ++i) {
        parameter(runtime, board, FG_CAM_PORT, i, 0);
        runtime.Fg_getParameterIdByName(board, "FG_GEN_ENABLE");
    }
}

std::vector<FgBufferRing*> allocateBuffers(const reference::RuntimeEntries& runtime, Fg_Struct* board,
                                           int channels)
{
    std::vector<FgBufferRing*> rings;
    for (int i = 0; i < channels; ++i) {
        const auto dma = static_cast<unsigned int>(i);
        const int width = parameter(runtime, board, FG_WIDTH, 0, dma);
        const int height = parameter(runtime, board, FG_HEIGHT, 0, dma);
        parameter(runtime, board, FG_PIXELFORMAT, 0, dma); // 8 bits
        const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        rings.push_back(runtime.Fg_AllocMemEx(board, bytes * BUFFERS, BUFFERS));
        const std::int32_t seconds = 10;
        ask(runtime.Fg_setParameterWithType(board, FG_TIMEOUT_PARAMETER, &seconds, dma, FG_TYPE_INT32));
    }
    return rings;
}

void lookForBoards(const reference::RuntimeEntries& runtime)
{
    ask(runtime.Fg_InitLibraries(nullptr));
    askSystem(runtime, FG_INFO_NR_OF_BOARDS);
    runtime.Fg_getBoardNameByType(runtime.Fg_getBoardType(0));
    askSystem(runtime, FG_INFO_BOARD_SERIAL);
    ask(runtime.FgCam_getCount(0));
}

/// The calls that loadAndUnload() makes.
void callDirectly(int channels)
{
    const auto runtime = reference::requireRuntime();
    Fg_Struct* const board = runtime->Fg_Init(Rig::instance().applet(channels).c_str(), 0);
    askSystem(*runtime, FG_INFO_NR_OF_PORTS);
    readStructure(*runtime, board);
    const std::uint64_t events = registerEvents(*runtime, board);
    if (!runtime->Fg_getParameterInfo(board, 0))
        std::abort();
    const auto rings = allocateBuffers(*runtime, board, channels);
    lookForBoards(*runtime);
    for (FgBufferRing* const ring : rings)
        ask(runtime->Fg_FreeMemEx(board, ring));
    ask(runtime->Fg_activateEvents(board, events, 0));
    ask(runtime->Fg_registerEventCallback(board, events, nullptr, nullptr, 0, nullptr));
    ask(runtime->Fg_FreeGrabber(board));
}

std::string journalOf(void (*work)(int), int channels)
{
    const Rig& rig = Rig::instance();
    const auto setJournal = rig.control<FgSim_setJournal_t>("FgSim_setJournal");
    const auto getJournal = rig.control<FgSim_getJournal_t>("FgSim_getJournal");
    setJournal(1);
    work(channels);
    setJournal(0);
    std::size_t bytes = 0;
    getJournal(nullptr, &bytes);
    std::string text(bytes, '\0');
    getJournal(text.data(), &bytes);
    return text;
}

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double secondsOf(void (*work)(int), int channels)
{
    const double begin = processorSeconds();
    work(channels);
    return processorSeconds() - begin;
}

template <int CHANNELS>
void whole(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(secondsOf(&loadAndUnload, CHANNELS));
}

template <int CHANNELS>
void direct(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(secondsOf(&callDirectly, CHANNELS));
}

// --- growth ------------------------------------------------------------------------------------------------

constexpr std::array SIZES = {1, 4, 16, 64, 256};
constexpr int ROUNDS = 51;

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
    return values[values.size() / 2];
}

struct Cost
{
    double wholeMicroseconds;
    double directMicroseconds;
    std::int64_t wholePeak; ///< peak growth of the heap, in bytes
    std::int64_t directPeak;
};

std::int64_t peakOf(void (*work)(int), int channels)
{
    const std::int64_t before = heapBytes;
    heapPeak = before;
    work(channels);
    return heapPeak - before;
}

Cost costOf(int channels)
{
    std::vector<double> wholes;
    std::vector<double> directs;
    for (int i = 0; i < ROUNDS; ++i) {
        wholes.push_back(secondsOf(&loadAndUnload, channels) * 1e6);
        directs.push_back(secondsOf(&callDirectly, channels) * 1e6);
    }
    return {median(wholes), median(directs), peakOf(&loadAndUnload, channels),
            peakOf(&callDirectly, channels)};
}

/// The cost of each further channel, from one size to the next; constant if the growth is linear.
void printGrowth()
{
    std::puts("\neach further channel       whole       direct    beyond the runtime     heap peak   beyond "
              "the runtime");
    Cost smaller = costOf(SIZES.front());
    for (std::size_t i = 1; i < SIZES.size(); ++i) {
        const Cost larger = costOf(SIZES[i]);
        const double more = SIZES[i] - SIZES[i - 1];
        const double wholeTime = (larger.wholeMicroseconds - smaller.wholeMicroseconds) / more;
        const double directTime = (larger.directMicroseconds - smaller.directMicroseconds) / more;
        const double wholeBytes = static_cast<double>(larger.wholePeak - smaller.wholePeak) / more;
        const double directBytes = static_cast<double>(larger.directPeak - smaller.directPeak) / more;
        std::printf(
            "from %3d to %3d       %8.2f us  %8.2f us        %8.2f us     %8.0f bytes     %8.0f bytes\n",
            SIZES[i - 1], SIZES[i], wholeTime, directTime, wholeTime - directTime, wholeBytes,
            wholeBytes - directBytes);
        smaller = larger;
    }
}

} // namespace

RATIO("load and unload, 1 channel / its runtime calls", whole<1>, direct<1>, 0, ovra::bench::Clock::Own);
RATIO("load and unload, 4 channels / its runtime calls", whole<4>, direct<4>, 0, ovra::bench::Clock::Own);
RATIO("load and unload, 16 channels / its runtime calls", whole<16>, direct<16>, 0, ovra::bench::Clock::Own);
RATIO("load and unload, 64 channels / its runtime calls", whole<64>, direct<64>, 0, ovra::bench::Clock::Own);
RATIO("load and unload, 256 channels / its runtime calls", whole<256>, direct<256>, 0,
      ovra::bench::Clock::Own);

int main(int argc, char** argv)
{
    loadAndUnload(1); // for one-time initialisations
    for (const int channels : SIZES) {
        const std::string expected = journalOf(&loadAndUnload, channels);
        const std::string made = journalOf(&callDirectly, channels);
        if (made != expected) {
            const auto place = std::ranges::mismatch(expected, made);
            const auto line = [](const std::string& text, auto at) {
                const auto begin = text.rfind('\n', static_cast<std::size_t>(at - text.begin())) + 1;
                return text.substr(begin, text.find('\n', begin) - begin);
            };
            std::fprintf(stderr, "%d channels: a load calls \"%s\", its yardstick \"%s\"\n", channels,
                         line(expected, place.in1).c_str(), line(made, place.in2).c_str());
            return 1;
        }
    }
    if (argc == 2 && std::strcmp(argv[1], "--compare-calls") == 0)
        return 0;
    const int result = ovra::bench::runRatios(argc, argv);
    printGrowth();
    return result;
}
