// SPDX-License-Identifier: MIT
// The cost of an image of the virtual runtime, by its format: from the source through the channel into the
// ring. The yardstick is a memcpy of the image's bytes between rings of equal size.

#include "Ratios.h"

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5.h"
#include "simulation/fglib5/SimulationControl.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

constexpr std::size_t WIDTH = 1024, HEIGHT = 768;
constexpr FgFrameIndex BUFFERS = 8;
constexpr FgFrameIndex IMAGES = 64; // per iteration

constexpr std::size_t bytesOf(int format)
{
    switch (format) {
    case FG_PIXELFORMAT_MONO8:
        return WIDTH * HEIGHT;
    case FG_PIXELFORMAT_MONO12_PACKED:
        return WIDTH * HEIGHT * 3 / 2;
    case FG_PIXELFORMAT_RGB8:
        return WIDTH * HEIGHT * 3;
    case FG_PIXELFORMAT_BGRA8:
        return WIDTH * HEIGHT * 4;
    default:
        return WIDTH * HEIGHT * 2;
    }
}

constexpr const char* MACHINE = R"({"name": "measured machine",
    "boards": [{"model": "m", "boardType": 1, "serial": "1", "ports": 1}],
    "cameras": [{"board": 0, "port": 0, "model": "c", "serial": "c", "interface": "gige",
                 "sensorWidth": 1024, "sensorHeight": 768, "frameRate": 0, "scene": "landscape"}]})";

constexpr const char* APPLET = R"({"format": "virtual-applet-1", "name": "applet", "boardType": 1,
    "processes": [{"dmas": [0], "ports": [0]}],
    "dmas": [{"index": 0, "width": 1024, "height": 768,
              "formats": ["Mono8", "Mono12", "Mono16", "Mono12Packed", "Rgb8", "Bgra8", "BayerRg12"]}]})";

/// The entries that are used, each by its own name.
#define ENTRIES(X)      \
    X(Fg_InitLibraries) \
    X(Fg_Init)          \
    X(Fg_setParameter)  \
    X(Fg_AllocMemEx)    \
    X(Fg_FreeMemEx)     \
    X(Fg_AcquireEx) X(Fg_stopAcquireEx) X(Fg_getLastPicNumberEx) X(Fg_getLastPicNumberBlockingEx)

class Rig
{
    void* const m_runtime = dlopen(OVRA_SIMULATED_RUNTIME, RTLD_NOW | RTLD_LOCAL); // the entries come from it

public:
    static Rig& instance()
    {
        static Rig rig;
        return rig;
    }

#define ENTRY(name) decltype(&::name) name = entry<decltype(&::name)>(#name);
    ENTRIES(ENTRY)
#undef ENTRY
    Fg_Struct* grabber = nullptr;

private:
    template <class Function>
    Function entry(const char* name) const
    {
        auto* const found = dlsym(m_runtime, name);
        if (found == nullptr)
            std::abort(); // the measurement would be void
        return reinterpret_cast<Function>(found);
    }

    static std::string write(const std::filesystem::path& file, const char* content)
    {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << content;
        return file.string();
    }

    Rig()
    {
        const auto folder =
            std::filesystem::temp_directory_path() /
            ("ovra-bench-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        entry<FgSim_setMachine_t*>("FgSim_setMachine")(write(folder / "machine.json", MACHINE).c_str());
        Fg_InitLibraries(nullptr);
        grabber = Fg_Init(write(folder / "applet.hap", APPLET).c_str(), 0);
        std::filesystem::remove_all(folder);
        if (grabber == nullptr || entry<FgCam_start_t*>("FgCam_start")(0, 0) != FG_OK)
            std::abort();
    }
};

/// Processor time of all threads of the process, which does not depend on what else the machine does.
double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <int FORMAT>
void images(benchmark::State& state)
{
    auto& rig = Rig::instance();
    const std::int32_t format = FORMAT;
    rig.Fg_setParameter(rig.grabber, FG_PIXELFORMAT, &format, 0);
    auto* const ring = rig.Fg_AllocMemEx(rig.grabber, bytesOf(FORMAT) * BUFFERS, BUFFERS);
    if (rig.Fg_AcquireEx(rig.grabber, 0, FG_GRAB_INFINITE, FG_ACQUIRE_STANDARD, ring) != FG_OK)
        std::abort();
    rig.Fg_getLastPicNumberBlockingEx(rig.grabber, 2 * BUFFERS, 0, 60,
                                      ring); // each picture has been rendered
    for (auto _ : state) {
        const auto last = rig.Fg_getLastPicNumberEx(rig.grabber, 0, ring);
        const auto begin = processorSeconds();
        const auto taken = rig.Fg_getLastPicNumberBlockingEx(rig.grabber, last + IMAGES, 0, 60, ring) - last;
        state.SetIterationTime((processorSeconds() - begin) * static_cast<double>(IMAGES) /
                               static_cast<double>(taken));
    }
    rig.Fg_stopAcquireEx(rig.grabber, 0, ring, 0);
    rig.Fg_FreeMemEx(rig.grabber, ring);
}

template <int FORMAT>
void copies(benchmark::State& state)
{
    constexpr auto BYTES = bytesOf(FORMAT);
    std::vector<unsigned char> source(BYTES * BUFFERS, 1), target(BYTES * BUFFERS, 2);
    for (auto _ : state) {
        const auto begin = processorSeconds();
        for (std::size_t i = 0; i < IMAGES; ++i) {
            const auto place = i % BUFFERS * BYTES;
            std::memcpy(target.data() + place, source.data() + place, BYTES);
            benchmark::DoNotOptimize(target.data());
            benchmark::ClobberMemory();
        }
        state.SetIterationTime(processorSeconds() - begin);
    }
}

RATIO("image in Mono8", images<FG_PIXELFORMAT_MONO8>, copies<FG_PIXELFORMAT_MONO8>, 0,
      ovra::bench::Clock::Own);
RATIO("image in Mono12", images<FG_PIXELFORMAT_MONO12>, copies<FG_PIXELFORMAT_MONO12>, 0,
      ovra::bench::Clock::Own);
RATIO("image in Mono12Packed", images<FG_PIXELFORMAT_MONO12_PACKED>, copies<FG_PIXELFORMAT_MONO12_PACKED>, 0,
      ovra::bench::Clock::Own);
RATIO("image in Rgb8", images<FG_PIXELFORMAT_RGB8>, copies<FG_PIXELFORMAT_RGB8>, 0, ovra::bench::Clock::Own);
RATIO("image in Bgra8", images<FG_PIXELFORMAT_BGRA8>, copies<FG_PIXELFORMAT_BGRA8>, 0,
      ovra::bench::Clock::Own);
RATIO("image in BayerRg12", images<FG_PIXELFORMAT_BAYER_RG12>, copies<FG_PIXELFORMAT_BAYER_RG12>, 0,
      ovra::bench::Clock::Own);

} // namespace

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
