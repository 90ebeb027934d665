/// \file
/// The virtual hardware: what a machine description file says. simulation/README.md teaches its fields.
#pragma once

#include "pictures/Scenes.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulation {

/// Pictures that a camera sends in place of a scene.
struct ReplayDescription
{
    std::vector<std::filesystem::path> files; ///< PNG files, in their order
    bool repeat;                              ///< round and round; else once after each start
};

struct CameraDescription
{
    unsigned int board; ///< index in the machine's boards
    unsigned int port;
    std::string model;
    std::string serial;
    std::string interface;
    int sensorWidth; ///< pixels
    int sensorHeight;
    int width; ///< pixels, at the start; 1 to the sensor's
    int height;
    double frameRate; ///< images per second, 0 = as fast as possible
    double exposure;  ///< microseconds, at the start; the scene then is as bright as it is painted
    Scene scene;
    bool lineScan = false; ///< a line camera, below which a web runs; its rate is of lines
    std::optional<ReplayDescription> replay;
};

struct BoardDescription
{
    std::string model;
    std::uint16_t boardType;
    std::uint32_t serial;
    unsigned int ports;
};

struct FaultDescription
{
    std::string entry;
    std::uint64_t nth;
    int code;
};

struct DelayDescription
{
    std::string entry;
    std::uint32_t microseconds;
};

struct MachineDescription
{
    std::string name;
    std::vector<BoardDescription> boards;
    std::vector<CameraDescription> cameras;
    std::vector<FaultDescription> faults;
    std::vector<DelayDescription> delays;
};

/// Throws FG_MACHINE_DESCRIPTION with the line that says what is wrong.
MachineDescription readMachineDescription(const std::filesystem::path& file);

} // namespace simulation
