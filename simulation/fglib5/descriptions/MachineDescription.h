// SPDX-License-Identifier: MIT
/// \file
/// MachineDescription: the content of a machine description file. simulation/README.md explains its fields.
#pragma once

#include "pictures/Scenes.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulation {

/// Recorded pictures that a camera sends instead of a scene.
struct ReplayDescription
{
    std::vector<std::filesystem::path> files; ///< PNG files, in their order
    bool repeat;                              ///< false: once after each start
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
    int width; ///< pixels, initial value; 1 to the sensor's
    int height;
    double frameRate; ///< images per second, 0 = as fast as possible
    double exposure;  ///< microseconds, initial value; at this exposure the scene has its normal brightness
    Scene scene;
    bool lineScan = false; ///< a line camera above a moving web; its rate counts lines
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

/// Throws FG_MACHINE_DESCRIPTION with a line that names the error.
MachineDescription readMachineDescription(const std::filesystem::path& file);

} // namespace simulation
