// SPDX-License-Identifier: MIT
#include "descriptions/Applet.h"

#include "Platform.h"
#include "descriptions/JsonReader.h"
#include "descriptions/NumberText.h"

#include "fglib5/LegacyApplet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

namespace simulation {

namespace {

constexpr auto FORMAT = "virtual-applet-1";
constexpr int MAX_SIDE = 32768; // pixels
constexpr int MAX_DMAS = 256;
constexpr int FIRST_OWN_ID = 10000; // lower ids are the runtime's own parameters
constexpr int MAX_LEGACY_CHANNELS = 64;

bool hasEnding(const std::filesystem::path& file, const std::string& ending)
{
    return file.extension().string() == ending;
}

bool looksLikeJson(const std::string& content)
{
    const auto first = content.find_first_not_of(" \t\r\n");
    return first != std::string::npos && content[first] == '{';
}

FgValueType valueTypeNamed(const std::string& name)
{
    static const std::map<std::string, FgValueType> TYPES = {
        {"int32", FG_TYPE_INT32},   {"uint32", FG_TYPE_UINT32}, {"int64", FG_TYPE_INT64},
        {"uint64", FG_TYPE_UINT64}, {"double", FG_TYPE_DOUBLE}, {"string", FG_TYPE_STRING}};
    return TYPES.at(name);
}

// The runtime computes with signed 64-bit integers, limited to those that a double holds exactly.
std::pair<double, double> limitsOf(FgValueType type)
{
    switch (type) {
    case FG_TYPE_INT32:
        return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case FG_TYPE_UINT32:
        return {0, std::numeric_limits<std::uint32_t>::max()};
    case FG_TYPE_INT64:
        return {-EXACT_INTEGERS, EXACT_INTEGERS};
    case FG_TYPE_UINT64:
        return {0, EXACT_INTEGERS};
    default:
        return {std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max()};
    }
}

void readRange(const JsonField& field, ParameterDescription& description)
{
    const auto [lowest, highest] = limitsOf(description.type);
    description.minimum = field["min"].numberOr(lowest, lowest, highest);
    description.maximum = field["max"].numberOr(highest, description.minimum, highest);
    description.step = field["step"].numberOr(description.type == FG_TYPE_DOUBLE ? 0 : 1, 0, highest);
    if (description.type == FG_TYPE_DOUBLE)
        description.initial = field["default"].number(description.minimum, description.maximum);
    else
        description.initial =
            field["default"].integer(static_cast<std::int64_t>(std::ceil(description.minimum)),
                                     static_cast<std::int64_t>(std::floor(description.maximum)));
}

struct EffectRow
{
    std::string_view name;
    Effect effect;
    FgValueType type;
    double minimum; ///< the parameter's range must lie within these limits
    double maximum;
};

constexpr double MAX_RATE = 1'000'000; // Hz

constexpr std::array<EffectRow, 9> EFFECTS = {{
    {"gain", Effect::Gain, FG_TYPE_DOUBLE, 0, 1000},
    {"offset", Effect::Offset, FG_TYPE_INT32, -255, 255},
    {"gamma", Effect::Gamma, FG_TYPE_DOUBLE, 0.05, 20},
    {"flip-horizontal", Effect::FlipHorizontal, FG_TYPE_INT32, 0, 1},
    {"flip-vertical", Effect::FlipVertical, FG_TYPE_INT32, 0, 1},
    {"origin-x", Effect::OriginX, FG_TYPE_INT32, 0, MAX_SIDE},
    {"origin-y", Effect::OriginY, FG_TYPE_INT32, 0, MAX_SIDE},
    {"trigger-mode", Effect::TriggerMode, FG_TYPE_INT32, 0, 2},
    {"trigger-rate", Effect::TriggerRate, FG_TYPE_DOUBLE, 0, MAX_RATE},
}};

void readEffect(const JsonField& field, ParameterDescription& description)
{
    const auto name = field["effect"].choice({"gain", "offset", "gamma", "flip-horizontal", "flip-vertical",
                                              "origin-x", "origin-y", "trigger-mode", "trigger-rate"});
    const auto& row = *std::ranges::find(EFFECTS, name, &EffectRow::name);
    if (description.type != row.type)
        field["type"].expected(std::string(row.type == FG_TYPE_DOUBLE ? "'double'" : "'int32'") +
                               " for the effect '" + name + "'");
    if (description.minimum < row.minimum || description.maximum > row.maximum)
        field["effect"].expected("a range within " + numberText(row.minimum) + " to " +
                                 numberText(row.maximum) + " for '" + name + "'");
    description.effect = row.effect;
    if (row.effect == Effect::TriggerMode)
        description.choices = {{0, "free-run"}, {1, "software"}, {2, "external"}};
}

ParameterDescription readParameter(const JsonField& field)
{
    field.object(
        {"name", "id", "type", "unit", "min", "max", "step", "default", "writable", "scope", "effect"});
    ParameterDescription description{};
    description.name = field["name"].name();
    description.id =
        static_cast<int>(field["id"].integer(FIRST_OWN_ID, std::numeric_limits<std::int32_t>::max()));
    description.unit = field["unit"].textOr("");
    description.type =
        valueTypeNamed(field["type"].choice({"int32", "uint32", "int64", "uint64", "double", "string"}));
    description.writable = field["writable"].booleanOr(true);
    description.perDma = field["scope"].given() && field["scope"].choice({"dma", "applet"}) == "dma";
    if (description.type == FG_TYPE_STRING)
        description.initial = field["default"].text();
    else
        readRange(field, description);
    if (field["effect"].given())
        readEffect(field, description);
    return description;
}

std::vector<ParameterDescription> readParameters(const JsonField& list)
{
    std::vector<ParameterDescription> descriptions;
    for (const auto& field : list.elements()) {
        const auto description = readParameter(field);
        for (const auto& other : descriptions) {
            if (other.id == description.id)
                field["id"].expected("an id that no other parameter has");
            if (other.name == description.name)
                field["name"].expected("a name that no other parameter has");
        }
        descriptions.push_back(description);
    }
    return descriptions;
}

GeneratorDescription readGenerator(const JsonField& field)
{
    field.object({"pattern", "frameRate", "enabled"});
    return {.pattern = patternNamed(field["pattern"].choice({"ramp", "checkerboard"})),
            .frameRate = field["frameRate"].numberOr(25, 0, 100000),
            .enabled = field["enabled"].booleanOr(false)};
}

const PixelFormat* readFormat(const JsonField& field)
{
    const auto* const format = pixelFormat(field.text());
    if (format == nullptr) {
        std::string names;
        for (const auto& known : pixelFormats())
            names += (names.empty() ? "'" : ", '") + std::string(known.name) + "'";
        field.expected("one of " + names);
    }
    return format;
}

DmaDescription readDma(const JsonField& field)
{
    field.object({"index", "width", "height", "maxWidth", "maxHeight", "port", "generator", "formats"});
    DmaDescription dma{};
    dma.index = static_cast<int>(field["index"].integer(0, MAX_DMAS - 1));
    dma.maxWidth = static_cast<int>(field["maxWidth"].integerOr(MAX_SIDE, 1, MAX_SIDE));
    dma.maxHeight = static_cast<int>(field["maxHeight"].integerOr(MAX_SIDE, 1, MAX_SIDE));
    dma.width = static_cast<int>(field["width"].integer(1, dma.maxWidth));
    dma.height = static_cast<int>(field["height"].integer(1, dma.maxHeight));
    if (field["port"].given())
        dma.port = static_cast<int>(field["port"].integer(0, MAX_DMAS - 1));
    if (field["generator"].given())
        dma.generator = readGenerator(field["generator"]);
    for (const auto& element : field["formats"].elements())
        dma.formats.push_back(readFormat(element));
    if (dma.formats.empty())
        dma.formats.push_back(pixelFormat(FG_PIXELFORMAT_MONO8));
    return dma;
}

std::vector<DmaDescription> readDmas(const JsonField& list)
{
    std::vector<DmaDescription> dmas;
    for (const auto& field : list.elements()) {
        const auto dma = readDma(field);
        if (std::ranges::find(dmas, dma.index, &DmaDescription::index) != dmas.end())
            field["index"].expected("an index that no other DMA channel has");
        dmas.push_back(dma);
    }
    std::ranges::sort(dmas, {}, &DmaDescription::index);
    return dmas;
}

std::optional<int> readPosition(const JsonField& field)
{
    if (!field.given())
        return {};
    return static_cast<int>(field.integer(0, MAX_DMAS - 1));
}

ProcessDescription readProcess(const JsonField& field, const std::vector<DmaDescription>& dmas)
{
    field.object({"dmas", "ports", "dmaCountFails", "portCountFails", "dmaPortFails", "camPortFails"});
    ProcessDescription process;
    for (const auto& element : field["dmas"].elements()) {
        const auto index = static_cast<int>(element.integer(0, MAX_DMAS - 1));
        if (std::ranges::find(dmas, index, &DmaDescription::index) == dmas.end())
            element.expected("the index of a channel that /dmas describes");
        process.dmas.push_back(index);
    }
    for (const auto& element : field["ports"].elements())
        process.ports.push_back(static_cast<int>(element.integer(-MAX_DMAS, MAX_DMAS - 1)));
    process.dmaCountFails = field["dmaCountFails"].booleanOr(false);
    process.portCountFails = field["portCountFails"].booleanOr(false);
    process.dmaPortFails = readPosition(field["dmaPortFails"]);
    process.camPortFails = readPosition(field["camPortFails"]);
    return process;
}

int readProcessesInFile(const JsonField& field, std::size_t processes)
{
    if (!field.given())
        return static_cast<int>(processes);
    if (field.isBoolean())
        return field.booleanOr(true) ? static_cast<int>(processes) : -1;
    return static_cast<int>(field.integer(-1, MAX_DMAS));
}

// A channel that names no port gets the port at its own position in its process.
void assignPorts(Applet& applet)
{
    for (const auto& process : applet.processes) {
        for (std::size_t j = 0; j < std::min(process.dmas.size(), process.ports.size()); ++j) {
            auto& dma = *std::ranges::find(applet.dmas, process.dmas[j], &DmaDescription::index);
            if (!dma.port && process.ports[j] >= 0)
                dma.port = process.ports[j];
        }
    }
}

Applet readDescription(const std::filesystem::path& file, const std::string& content, bool wrapped)
{
    const JsonDocument document({"applet file", file, FG_INVALID_APPLET_FILE}, content);
    const auto root = document.root();
    root.object({"format", "name", "version", "boardType", "type", "tags", "nrOfProcessesInFile",
                 "processCountFails", "processes", "dmas", "parameters"});
    root["format"].choice({FORMAT});
    Applet applet;
    applet.file = file;
    applet.name = root["name"].text();
    applet.version = root["version"].textOr("1.0");
    applet.boardType = static_cast<std::uint16_t>(root["boardType"].integer(0, 65535));
    applet.type = root["type"].textOr(wrapped ? "DLL" : "HAP");
    applet.wrapped = wrapped;
    for (const auto& tag : root["tags"].elements())
        applet.tags.push_back(tag.text());
    applet.dmas = readDmas(root["dmas"]);
    for (const auto& process : root["processes"].elements())
        applet.processes.push_back(readProcess(process, applet.dmas));
    applet.processesInFile = readProcessesInFile(root["nrOfProcessesInFile"], applet.processes.size());
    applet.processCountFails = root["processCountFails"].booleanOr(false);
    applet.parameters = readParameters(root["parameters"]);
    assignPorts(applet);
    return applet;
}

Applet legacyApplet(const std::filesystem::path& file)
{
    Applet applet;
    applet.file = file;
    applet.name = file.stem().string();
    applet.type = "DLL";
    applet.legacy = true;
    return applet;
}

int channelsOf(const std::filesystem::path& file)
{
    auto* library = platform::openLibrary(file);
    if (library == nullptr)
        return 0;
    const auto info = reinterpret_cast<LegacyInfoFunction*>(platform::findSymbol(library, LEGACY_INFO_NAME));
    const auto channels = info == nullptr ? 0 : info(LEGACY_CHANNELS, 0, 0, 0, 0);
    platform::closeLibrary(library);
    return std::clamp(channels, 0, MAX_LEGACY_CHANNELS);
}

} // namespace

std::string textOf(const std::vector<NamedValue>& choices)
{
    std::string text;
    for (const auto& choice : choices)
        text += (text.empty() ? "" : ";") + std::to_string(choice.value) + "=" + choice.name;
    return text;
}

ParameterDescription numberParameter(int id, std::string name, std::string unit, FgValueType type,
                                     double minimum, double maximum, ParameterValue initial)
{
    ParameterDescription description;
    description.id = id;
    description.name = std::move(name);
    description.unit = std::move(unit);
    description.type = type;
    description.minimum = minimum;
    description.maximum = maximum;
    description.step = type == FG_TYPE_DOUBLE ? 0 : 1;
    description.initial = std::move(initial);
    return description;
}

ParameterDescription choiceParameter(int id, std::string name, std::vector<NamedValue> choices,
                                     std::int64_t initial)
{
    const auto [lowest, highest] = std::ranges::minmax(choices, {}, &NamedValue::value);
    auto description =
        numberParameter(id, std::move(name), "", FG_TYPE_INT32, static_cast<double>(lowest.value),
                        static_cast<double>(highest.value), initial);
    description.choices = std::move(choices);
    return description;
}

Applet readApplet(const std::filesystem::path& file)
{
    std::string content;
    try {
        content = readFile(file);
    } catch (const std::ios_base::failure&) {
        throw Failure(FG_APPLET_NOT_FOUND,
                      "applet file " + file.string() + ": expected a readable file, found none");
    }
    const auto library = platform::libraryEnding();
    const bool isLibrary = hasEnding(file, library);
    if (!isLibrary && !hasEnding(file, ".hap"))
        throw Failure(FG_INVALID_APPLET_FILE, "applet file " + file.string() +
                                                  ": expected a name that ends with '.hap' or '" + library +
                                                  "'");
    if (isLibrary && !looksLikeJson(content))
        return legacyApplet(file);
    return readDescription(file, content, isLibrary);
}

void askLegacyChannels(Applet& applet)
{
    const int channels = channelsOf(applet.file);
    for (int i = 0; i < channels; ++i) {
        applet.dmas.push_back({.index = i,
                               .width = 640,
                               .height = 480,
                               .maxWidth = MAX_SIDE,
                               .maxHeight = MAX_SIDE,
                               .port = i,
                               .generator = GeneratorDescription{Pattern::Ramp, 25, false},
                               .formats = {pixelFormat(FG_PIXELFORMAT_MONO8)}});
        applet.processes.push_back({.dmas = {i}, .ports = {i}, .dmaPortFails = {}, .camPortFails = {}});
    }
}

} // namespace simulation
