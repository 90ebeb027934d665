// SPDX-License-Identifier: MIT
/// \file
/// Applet: the content of an applet file. simulation/README.md explains the fields.
///
///   .hap                        a JSON description
///   .so or .dll, JSON inside    a wrapped DLL applet, with the same description
///   .so or .dll, otherwise      a legacy DLL applet: a function of the library returns its number of
///   channels
#pragma once

#include "pictures/Patterns.h"
#include "pictures/PixelFormat.h"

#include "fglib5/Fglib5Types.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace simulation {

/// A parameter's value. All integer types use the first alternative.
using ParameterValue = std::variant<std::int64_t, double, std::string>;

/// The effect of a parameter on the images. A parameter without one only stores its value.
enum class Effect
{
    None,
    Gain,
    Offset, ///< digits of 8 bits
    Gamma,
    FlipHorizontal,
    FlipVertical,
    OriginX, ///< left edge of the region of interest, in pixels
    OriginY,
    TriggerMode,
    TriggerRate ///< pulses per second of the virtual encoder or light barrier
};

/// A value that a parameter can take, by its name.
struct NamedValue
{
    std::int64_t value;
    std::string name;
};

struct ParameterDescription
{
    int id = 0;
    std::string name;
    std::string unit;
    FgValueType type = FG_TYPE_INT32;
    double minimum = 0;
    double maximum = 0;
    double step = 0;
    ParameterValue initial;
    bool writable = true;
    bool perDma = false; ///< each DMA channel has its own value
    Effect effect = Effect::None;
    std::vector<NamedValue> choices; ///< empty: every value of the range is valid
};

/// "8=Mono8;12=Mono12", or "".
std::string textOf(const std::vector<NamedValue>& choices);

/// Describes a number in a range; for integers the step is 1.
ParameterDescription numberParameter(int id, std::string name, std::string unit, FgValueType type,
                                     double minimum, double maximum, ParameterValue initial);

/// Describes a parameter with a fixed set of values.
ParameterDescription choiceParameter(int id, std::string name, std::vector<NamedValue> choices,
                                     std::int64_t initial);

struct GeneratorDescription
{
    Pattern pattern;
    double frameRate; ///< images per second, 0 = as fast as possible
    bool enabled;
};

struct DmaDescription
{
    int index = 0;
    int width = 0; ///< pixels, initial value
    int height = 0;
    int maxWidth = 0;
    int maxHeight = 0;
    std::optional<int> port; ///< port whose camera the channel delivers
    std::optional<GeneratorDescription> generator;
    std::vector<const PixelFormat*> formats; ///< formats that it can write; the first is the initial one
};

struct ProcessDescription
{
    std::vector<int> dmas;  ///< global indices
    std::vector<int> ports; ///< global indices; a negative one is reported unchanged
    bool dmaCountFails = false;
    bool portCountFails = false;
    std::optional<int> dmaPortFails; ///< position whose query fails
    std::optional<int> camPortFails;
};

struct Applet
{
    std::filesystem::path file;
    std::string name;
    std::string version;
    std::string type; ///< "HAP", "DLL" or the file's own text
    bool wrapped = false;
    bool legacy = false;
    std::optional<std::uint16_t> boardType; ///< none for a legacy applet
    std::vector<std::string> tags;
    int processesInFile = -1; ///< negative: not in the file
    bool processCountFails = false;
    std::vector<ProcessDescription> processes;
    std::vector<DmaDescription> dmas;
    std::vector<ParameterDescription> parameters;
};

/// Throws FG_APPLET_NOT_FOUND, or FG_INVALID_APPLET_FILE with a line that names the error. Does not query the
/// channels of a legacy applet.
Applet readApplet(const std::filesystem::path& file);

/// Queries a legacy applet's library for its channels, and adds DMA i and port i for each. A library that
/// cannot be opened or has no Info gets none; clients that open it for its structure report the error.
void askLegacyChannels(Applet& applet);

} // namespace simulation
