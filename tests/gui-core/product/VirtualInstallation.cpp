#include "VirtualInstallation.h"

#include "simulation/fglib5/SimulationControl.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace ovra::tests {

namespace {

constexpr const char* MACHINE = R"({
    "name": "test machine",
    "boards": [
        {"model": "ovra-quad-cl", "boardType": 2625, "serial": "a1b2c3", "ports": 3},
        {"model": "ovra-dual-cxp", "boardType": 2898, "serial": "beef", "ports": 1}
    ],
    "cameras": [
        {"board": 0, "port": 0, "model": "area", "serial": "c0", "interface": "coaxpress",
         "sensorWidth": 128, "sensorHeight": 96, "width": 64, "height": 48, "frameRate": 200, "scene": "landscape"},
        {"board": 0, "port": 1, "model": "small", "serial": "c1", "interface": "coaxpress",
         "sensorWidth": 128, "sensorHeight": 96, "width": 32, "height": 16, "frameRate": 200, "scene": "bottles"},
        {"board": 1, "port": 0, "model": "area", "serial": "c2", "interface": "coaxpress",
         "sensorWidth": 128, "sensorHeight": 96, "width": 64, "height": 48, "frameRate": 200, "scene": "text-chart"}
    ]
})";

std::filesystem::path newTemporaryFolder()
{
    std::random_device random;
    return std::filesystem::temp_directory_path() / ("ovra-test-" + std::to_string(random()));
}

} // namespace

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

VirtualInstallation::VirtualInstallation()
    : m_folder(newTemporaryFolder()),
      m_runtimeFile(std::filesystem::path(OVRA_STAGE_DIR) / "bin" /
                    ("fglib5" + boost::dll::shared_library::suffix().string())),
      m_runtime(m_runtimeFile)
{
    const std::string machine = write("simulation/machine.json", MACHINE);
    m_runtime.get<FgSim_setMachine_t>("FgSim_setMachine")(machine.c_str());
}

VirtualInstallation::~VirtualInstallation()
{
    forgetFaults();
    m_runtime.get<FgSim_setMachine_t>("FgSim_setMachine")(nullptr);
    std::error_code ignored; // a folder that stays behind is no reason to fail
    std::filesystem::remove_all(m_folder, ignored);
}

std::string VirtualInstallation::write(const std::string& path, const std::string& content)
{
    const std::filesystem::path file = m_folder / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return folder() + "/" + path;
}

std::string VirtualInstallation::addAlphaApplet(const std::string& fileName, const std::string& body)
{
    return addApplet("Hardware Applets/ovra-quad-cl/", 2625, fileName, body);
}

std::string VirtualInstallation::addBetaApplet(const std::string& fileName, const std::string& body)
{
    return addApplet("Hardware Applets/ovra-dual-cxp/", 2898, fileName, body);
}

std::string VirtualInstallation::addAlphaLibrary(const std::string& name, const std::string& content)
{
    return write("dll/ovra-quad-cl/" + name + boost::dll::shared_library::suffix().string(), content);
}

std::string VirtualInstallation::addApplet(const std::string& folder, int boardType,
                                           const std::string& fileName, const std::string& body)
{
    return write(folder + fileName, R"({"format": "virtual-applet-1", "name": ")" + fileName +
                                        R"(", "boardType": )" + std::to_string(boardType) + ", " + body +
                                        "}");
}

void VirtualInstallation::failCall(const std::string& entry, std::uint64_t nth, int code)
{
    ASSERT_EQ(m_runtime.get<FgSim_addFault_t>("FgSim_addFault")(entry.c_str(), nth, code), 0) << entry;
}

void VirtualInstallation::forgetFaults()
{
    m_runtime.get<FgSim_clearFaults_t>("FgSim_clearFaults")();
}

std::int64_t VirtualInstallation::calls(const std::string& entry) const
{
    return entry == "*" ? m_runtime.get<FgSim_totalCalls_t>("FgSim_totalCalls")()
                        : m_runtime.get<FgSim_callCount_t>("FgSim_callCount")(entry.c_str());
}

std::int64_t VirtualInstallation::live(int kind) const
{
    return m_runtime.get<FgSim_live_t>("FgSim_live")(kind);
}

} // namespace ovra::tests
