// SPDX-License-Identifier: MIT
#include "Fixture.h"

#include <boost/dll/shared_library.hpp>

#include <fstream>
#include <map>

namespace simulation::tests {

namespace {

boost::dll::shared_library& opened(const char* file)
{
    static auto* libraries = new std::map<std::string, boost::dll::shared_library>; // stay open
    auto& library = (*libraries)[file];
    if (!library.is_loaded())
        library.load(file);
    return library;
}

template <class Function>
void bind(Function*& slot, const char* name)
{
    slot = reinterpret_cast<Function*>(symbolOf(OVRA_RUNTIME, name));
    if (slot == nullptr)
        throw std::runtime_error(std::string("The runtime does not export ") + name);
}

const RuntimeFunctions& sharedRuntime()
{
    static const auto* runtime = new RuntimeFunctions;
    return *runtime;
}

} // namespace

void* symbolOf(const char* library, const char* name)
{
    auto& module = opened(library);
    return module.has(name) ? reinterpret_cast<void*>(&module.get<int()>(name)) : nullptr;
}

RuntimeFunctions::RuntimeFunctions()
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) bind(name, #name);
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) bind(name, #name);
#include "fglib5/CameraControl.inc"
#define FGSIM_ENTRY(result, name, parameters, arguments) bind(name, #name);
#include "simulation/fglib5/SimulationControl.inc"
}

const char* const SMALL_MACHINE = R"({
    "name": "Small",
    "boards": [
        {"model": "quad", "boardType": 7, "serial": "ab12", "ports": 4},
        {"model": "dual", "boardType": 8, "serial": "F00D", "ports": 2}
    ],
    "cameras": [
        {"board": 0, "port": 0, "model": "Small", "serial": "1", "interface": "gige",
         "sensorWidth": 40, "sensorHeight": 30, "frameRate": 200, "scene": "landscape"},
        {"board": 0, "port": 1, "model": "Fast", "serial": "2", "interface": "coaxpress",
         "sensorWidth": 32, "sensorHeight": 8, "frameRate": 0}
    ]
})";

const char* const SMALL_APPLET = R"({
    "format": "virtual-applet-1", "name": "Small", "boardType": 7, "tags": ["interface=cl-full", "x"],
    "processes": [{"dmas": [0, 1], "ports": [0, 1]}, {"dmas": [4], "ports": [3, -1]}],
    "dmas": [
        {"index": 0, "width": 40, "height": 30, "maxWidth": 64, "maxHeight": 64,
         "generator": {"pattern": "ramp", "frameRate": 0}},
        {"index": 1, "width": 40, "height": 30, "generator": {"pattern": "checkerboard", "frameRate": 100}},
        {"index": 4, "width": 8, "height": 8}
    ],
    "parameters": [
        {"name": "GAIN", "id": 10001, "type": "double", "unit": "dB", "min": -2, "max": 4, "default": 0.5, "scope": "dma"},
        {"name": "MODE", "id": 10002, "type": "uint32", "min": 2, "max": 10, "step": 4, "default": 2},
        {"name": "LABEL", "id": 10003, "type": "string", "default": "a"},
        {"name": "COUNTER", "id": 10004, "type": "int64", "default": 5000000000, "writable": false}
    ]
})";

SimulationTest::SimulationTest() : runtime(sharedRuntime())
{
    runtime.FgSim_clearFaults();
    runtime.FgSim_setJournal(0);
    runtime.FgSim_resetCounts();
}

SimulationTest::~SimulationTest()
{
    runtime.FgSim_clearFaults();
    for (auto* grabber : m_open)
        runtime.Fg_FreeGrabber(grabber);
    runtime.Fg_FreeLibraries();
    for (const int kind : {FGSIM_BOARD_HANDLES, FGSIM_RINGS, FGSIM_RING_BYTES, FGSIM_ACQUIRING_CHANNELS,
                           FGSIM_APPLET_ITERATORS})
        EXPECT_EQ(runtime.FgSim_live(kind), 0) << "left over of kind " << kind;
}

std::string SimulationTest::read(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

int SimulationTest::useMachine(const std::string& content) const
{
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(write("machine.json", content).c_str());
    return runtime.Fg_InitLibraries(nullptr);
}

Fg_Struct* SimulationTest::open(const std::string& content)
{
    auto* grabber = runtime.Fg_Init(write("Hardware Applets/quad/Small.hap", content).c_str(), 0);
    if (grabber != nullptr)
        m_open.push_back(grabber);
    return grabber;
}

void SimulationTest::free(Fg_Struct*& grabber)
{
    EXPECT_EQ(runtime.Fg_FreeGrabber(grabber), FG_OK);
    std::erase(m_open, grabber);
    grabber = nullptr;
}

std::string with(std::string text, const std::string& from, const std::string& to)
{
    const auto place = text.find(from);
    if (place == std::string::npos)
        throw std::logic_error("Nothing to replace: " + from);
    return text.replace(place, from.size(), to);
}

} // namespace simulation::tests
