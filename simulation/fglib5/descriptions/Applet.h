/// \file
/// Applets: what an applet file says. simulation/README.md teaches the fields.
///
///   .hap                        a JSON description
///   .so or .dll, JSON inside    a wrapped DLL applet, the same description
///   .so or .dll, otherwise      a legacy DLL applet: the library itself tells its number of channels
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

/// A parameter's value: of the integer types the first, whatever their width.
using ParameterValue = std::variant<std::int64_t, double, std::string>;

/// What a parameter does to the images; of the rest the value is kept and shown.
enum class Effect
{
    None,
    Gain,
    Offset, ///< digits of 8 bits
    Gamma,
    FlipHorizontal,
    FlipVertical,
    OriginX, ///< of the region of interest, in pixels
    OriginY,
    TriggerMode,
    TriggerRate ///< pulses per second of the virtual encoder or light barrier
};

/// A value that a parameter can take, by its name.
struct Choice
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
    bool perDma = false; ///< each DMA channel has a value of its own
    Effect effect = Effect::None;
    std::vector<Choice> choices; ///< none: every value of the range
};

/// "8=Mono8;12=Mono12", or "".
std::string textOf(const std::vector<Choice>& choices);

/// A parameter of a number in a range; of a whole number the step is 1.
ParameterDescription numberParameter(int id, std::string name, std::string unit, FgValueType type,
                                     double minimum, double maximum, ParameterValue initial);

/// A parameter whose value is one of these.
ParameterDescription choiceParameter(int id, std::string name, std::vector<Choice> choices,
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
    int width = 0; ///< pixels, at the start
    int height = 0;
    int maxWidth = 0;
    int maxHeight = 0;
    std::optional<int> port; ///< whose camera it delivers
    std::optional<GeneratorDescription> generator;
    std::vector<const PixelFormat*> formats; ///< that it can write; the first is the one at the start
};

struct ProcessDescription
{
    std::vector<int> dmas;  ///< global indices
    std::vector<int> ports; ///< global indices; a negative one is reported as it is
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
    std::string type; ///< "HAP", "DLL" or what the file says
    bool wrapped = false;
    bool legacy = false;
    std::optional<std::uint16_t> boardType; ///< a legacy applet does not tell
    std::vector<std::string> tags;
    int processesInFile = -1; ///< negative: the file does not tell
    bool processCountFails = false;
    std::vector<ProcessDescription> processes;
    std::vector<DmaDescription> dmas;
    std::vector<ParameterDescription> parameters;
};

/// Throws FG_APPLET_NOT_FOUND, or FG_INVALID_APPLET_FILE with the line that says what is wrong. The channels
/// of a legacy applet are not asked for.
Applet readApplet(const std::filesystem::path& file);

/// Asks a legacy applet's library for its channels: DMA i and port i for each of them. A library that cannot
/// be opened or has no Info gets none: the verdict on it is left to who opens it for its structure.
void askLegacyChannels(Applet& applet);

} // namespace simulation
