// SPDX-License-Identifier: MIT
#include "VirtualInstallation.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

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

} // namespace

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

VirtualInstallation::VirtualInstallation()
    : m_runtimeFile(std::filesystem::path(OVRA_STAGE_DIR) / "bin" /
                    ("fglib5" + boost::dll::shared_library::suffix().string())),
      m_runtime(m_runtimeFile)
{
    const std::string machine = write("simulation/machine.json", MACHINE);
    m_runtime.get<FgSim_setMachine_t>("FgSim_setMachine")(machine.c_str());
    m_runtime.get<FgSim_resetCounts_t>("FgSim_resetCounts")();
}

VirtualInstallation::~VirtualInstallation()
{
    forgetFaults();
    m_runtime.get<FgSim_setMachine_t>("FgSim_setMachine")(nullptr);
}

std::string VirtualInstallation::write(const std::string& path, const std::string& content)
{
    m_folder.write(path, content);
    return folder() + "/" + path;
}

std::string VirtualInstallation::addAlphaLibrary(const std::string& name, const std::string& content)
{
    return write("dll/ovra-quad-cl/" + name + boost::dll::shared_library::suffix().string(), content);
}

std::string VirtualInstallation::addLegacyApplet(const std::string& module)
{
    const std::string file = module + boost::dll::shared_library::suffix().string();
    return addAlphaLibrary(module, contentOf(std::filesystem::path(OVRA_TEST_MODULES) / module / file));
}

std::string VirtualInstallation::addInstalledLegacyApplet()
{
    return addAlphaLibrary("legacy", contentOf(OVRA_LEGACY_APPLET));
}

std::string VirtualInstallation::addWrappedApplet()
{
    return addAlphaLibrary("wrapped", R"({"format": "virtual-applet-1", "name": "wrapped", "boardType": 2625,
        "processes": [{"dmas": [4, 5], "ports": [0]}, {"ports": [1]}],
        "dmas": [{"index": 4, "width": 8, "height": 8}, {"index": 5, "width": 8, "height": 8}]})");
}

std::string VirtualInstallation::addApplet(const std::string& model, int boardType,
                                           const std::string& fileName, const std::string& body)
{
    return write("Hardware Applets/" + model + "/" + fileName,
                 R"({"format": "virtual-applet-1", "name": ")" + fileName + R"(", "boardType": )" +
                     std::to_string(boardType) + ", " + body + "}");
}

void VirtualInstallation::failCall(const std::string& entry, std::uint64_t nth, int code)
{
    ASSERT_EQ(m_runtime.get<FgSim_addFault_t>("FgSim_addFault")(entry.c_str(), nth, code), 0) << entry;
}

std::int64_t VirtualInstallation::calls(const std::string& entry) const
{
    return entry == "*" ? m_runtime.get<FgSim_totalCalls_t>("FgSim_totalCalls")()
                        : m_runtime.get<FgSim_callCount_t>("FgSim_callCount")(entry.c_str());
}

} // namespace ovra::tests
