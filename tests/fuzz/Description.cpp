// SPDX-License-Identifier: MIT
// Fuzzer for descriptions that people write by hand. Each file is either read, with valid and unchanged
// values, or refused in one line that names it.
//
// READ is the function that reads a file with the given ENDING and refuses it with status CODE.

#include "Require.h"

#include "CallGate.h"
#include "Failure.h"
#include "descriptions/Applet.h"
#include "descriptions/MachineDescription.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

using nlohmann::json;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t largest);

namespace {

/// In memory: a disk would take most of the time.
const std::filesystem::path& scratchFile()
{
    static const std::filesystem::path MEMORY = "/dev/shm";
    static const std::filesystem::path FILE_PATH =
        (is_directory(MEMORY) ? MEMORY : std::filesystem::temp_directory_path()) /
        ("ovra-fuzz-" + std::to_string(getpid()) + ENDING);
    return FILE_PATH;
}

[[maybe_unused]] const bool REMOVED_AT_THE_END =
    std::atexit([] { std::filesystem::remove(scratchFile()); }) == 0;

void requireNumber(const json& file, std::int64_t read)
{
    require(file.dump() == std::to_string(read), "a number as it stands in the file");
}

void requireSize(int size, int largest)
{
    require(size >= 1 && size <= largest, "a size of 1 to the largest");
}

[[maybe_unused]] void requireSense(const simulation::MachineDescription& machine, const json& file)
{
    for (std::size_t i = 0; i < machine.boards.size(); ++i) {
        const auto& board = machine.boards[i];
        const json& text = file["boards"][i];
        requireNumber(text["boardType"], board.boardType);
        requireNumber(text["ports"], board.ports);
        require(std::stoull(text["serial"].get<std::string>(), nullptr, 16) == board.serial, "the serial");
        require(board.model.find_first_of("/\\") == std::string::npos && board.model.front() != '.',
                "a model that names a folder here");
        require(std::ranges::count(machine.boards, board.serial, &simulation::BoardDescription::serial) == 1,
                "a serial for each board");
    }
    for (const auto& camera : machine.cameras) {
        require(camera.port < machine.boards.at(camera.board).ports, "a port that the board has");
        require(std::ranges::count_if(machine.cameras,
                                      [&](const auto& other) {
                                          return other.board == camera.board && other.port == camera.port;
                                      }) == 1,
                "one camera on a port");
        requireSize(camera.width, camera.sensorWidth);
        requireSize(camera.height, camera.sensorHeight);
        require(camera.frameRate >= 0 && camera.frameRate <= (camera.lineScan ? 1e6 : 1e5),
                "a rate that can be kept");
        require(camera.exposure >= 1, "an exposure");
        require(!camera.lineScan || camera.sensorHeight == 1, "one line of a line camera");
        require(!camera.replay || !camera.replay->files.empty(), "pictures to replay");
    }
    for (std::size_t i = 0; i < machine.faults.size(); ++i) {
        requireNumber(file["faults"][i]["code"], machine.faults[i].code);
        simulation::CallGate::instance().addFault(
            {.entry = machine.faults[i].entry, .code = machine.faults[i].code});
    }
    simulation::CallGate::instance().clearFaults();
}

[[maybe_unused]] void requireSense(const simulation::Applet& applet, const json& file)
{
    const auto isDescribed = [&](int index) {
        return std::ranges::count(applet.dmas, index, &simulation::DmaDescription::index) == 1;
    };
    for (const auto& dma : applet.dmas) {
        require(isDescribed(dma.index), "an index for each channel");
        requireSize(dma.width, dma.maxWidth);
        requireSize(dma.height, dma.maxHeight);
        require(!dma.formats.empty() && std::ranges::count(dma.formats, nullptr) == 0,
                "formats that there are");
    }
    for (std::size_t i = 0; i < applet.processes.size(); ++i) {
        const auto& process = applet.processes[i];
        require(std::ranges::all_of(process.dmas, isDescribed), "channels that are described");
        for (std::size_t j = 0; j < process.ports.size(); ++j)
            requireNumber(file["processes"][i]["ports"][j], process.ports[j]);
    }
    for (std::size_t i = 0; i < applet.parameters.size(); ++i) {
        const auto& parameter = applet.parameters[i];
        const json& text = file["parameters"][i];
        requireNumber(text["id"], parameter.id);
        require(text.contains("effect") == (parameter.effect != simulation::Effect::None),
                "the effect that is asked for");
        require(parameter.effect == simulation::Effect::None || parameter.type == FG_TYPE_DOUBLE ||
                    parameter.minimum >= -255,
                "a range that the effect can have");
        if (const auto* whole = std::get_if<std::int64_t>(&parameter.initial))
            requireNumber(text["default"], *whole);
        require(parameter.type == FG_TYPE_STRING ||
                    (text["default"] >= parameter.minimum && text["default"] <= parameter.maximum),
                "a first value within the range");
    }
}

/// Collects every value of a description, including nested ones.
void collect(json& value, std::vector<json*>& values)
{
    values.push_back(&value);
    if (value.is_structured())
        for (auto& inner : value)
            collect(inner, values);
}

json otherNumber(const json& number, std::minstd_rand& random)
{
    const json whole = number.is_number_integer() ? static_cast<std::int64_t>(number.get<std::uint64_t>() + 1)
                                                  : std::int64_t{1};
    const json numbers[] = {whole, number.get<double>() / 2, -1, 0, INT64_MAX, UINT64_MAX};
    return numbers[random() % std::size(numbers)];
}

std::string otherText(std::string text, std::size_t room)
{
    const auto size = text.size();
    text.resize(size + room);
    text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), size, text.size()));
    return text;
}

/// Changes one value: to a copy of another one, by adding or removing an element, or to a similar number or
/// text.
void change(json& value, const json& copy, std::minstd_rand& random)
{
    if (random() % 3 == 0)
        value = copy;
    else if (value.is_array() && random() % 2 == 0)
        value.push_back(value.empty() ? copy : json(value[random() % value.size()]));
    else if (value.is_structured() && !value.empty())
        value.erase(std::next(value.begin(), static_cast<std::ptrdiff_t>(random() % value.size())));
    else if (value.is_number())
        value = otherNumber(value, random);
    else if (value.is_string())
        value = otherText(value, 8);
}

} // namespace

/// Random bytes are hardly ever a description. So this changes the values of one; every eighth time it
/// changes bytes.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t largest,
                                               unsigned int seed)
{
    std::minstd_rand random(seed);
    json file = json::parse(data, data + size, nullptr, false);
    if (file.is_discarded() || random() % 8 == 0)
        return LLVMFuzzerMutate(data, size, largest);
    std::vector<json*> values;
    collect(file, values);
    json& value = *values[random() % values.size()];
    std::erase_if(values,
                  [&](const json* other) { return other->type() != value.type() && random() % 8 != 0; });
    const json copy = *values[random() % values.size()];
    change(value, copy, random);
    const auto text = file.dump(-1, ' ', false, json::error_handler_t::replace);
    if (text.size() > largest)
        return LLVMFuzzerMutate(data, size, largest);
    std::ranges::copy(text, data);
    return text.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::ofstream(scratchFile(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    try {
        const auto description = simulation::READ(scratchFile());
        requireSense(description, json::parse(data, data + size));
    } catch (const simulation::Failure& failure) {
        const std::string line = failure.what();
        if (failure.code() != CODE ||
            std::ranges::any_of(line, [](unsigned char letter) { return std::iscntrl(letter) != 0; }) ||
            line.find(scratchFile().filename()) == std::string::npos) {
            std::fprintf(stderr, "Expected one line that names the file, and code %d: %d, %s\n", CODE,
                         failure.code(), line.c_str());
            std::abort();
        }
        return -1; // not kept: the reader stops at the first error, so changes after it have no effect
    }
    return 0;
}
