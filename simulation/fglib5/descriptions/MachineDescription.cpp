// SPDX-License-Identifier: MIT
#include "descriptions/MachineDescription.h"

#include "CallGate.h"
#include "descriptions/JsonReader.h"
#include "fglib5/PathText.h"
#include "pictures/ReplayFilm.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>
#include <cctype>

namespace simulation {

namespace {

constexpr int MAX_SENSOR_SIDE = 16384; // pixels
constexpr unsigned int MAX_PORTS = 256;

BoardDescription readBoard(const JsonField& field)
{
    field.object({"model", "boardType", "serial", "ports"});
    return {.model = field["model"].name(),
            .boardType = static_cast<std::uint16_t>(field["boardType"].integer(0, 65535)),
            .serial = field["serial"].hexadecimal(),
            .ports = static_cast<unsigned int>(field["ports"].integer(0, MAX_PORTS))};
}

// A board type must stand for one model: folders are named after the model and found by the type.
void requireFittingBoard(const JsonField& field, const std::vector<BoardDescription>& others,
                         const BoardDescription& board)
{
    for (const auto& other : others) {
        if (other.serial == board.serial)
            field["serial"].expected("a serial that no other board has");
        if (other.boardType == board.boardType && other.model != board.model)
            field["boardType"].expected("a type that no other model has ('" + other.model + "' has it)");
        if (other.boardType != board.boardType && other.model == board.model)
            field["boardType"].expected("the type of the other '" + board.model + "'");
    }
}

std::vector<BoardDescription> readBoards(const JsonField& list)
{
    if (!list.given())
        list.expected("a list");
    std::vector<BoardDescription> boards;
    for (const auto& field : list.elements()) {
        const auto board = readBoard(field);
        requireFittingBoard(field, boards, board);
        boards.push_back(board);
    }
    return boards;
}

// Sorts numbers in names by value: "shot-2.png" comes before "shot-10.png".
std::string orderKey(const std::filesystem::path& file)
{
    std::string key, digits;
    for (const char letter : file.filename().string() + '\0') {
        if (std::isdigit(static_cast<unsigned char>(letter)) != 0) {
            digits += letter;
            continue;
        }
        if (!digits.empty())
            key += std::string(20 - std::min<std::size_t>(digits.size(), 20), '0') + digits;
        digits.clear();
        key += letter;
    }
    return key;
}

bool isNumbered(const std::string& name)
{
    return !name.empty() &&
           std::ranges::all_of(name, [](unsigned char letter) { return std::isdigit(letter) != 0; });
}

ReplayDescription readReplay(const JsonField& field, const std::filesystem::path& machineFolder)
{
    field.object({"folder", "series", "repeat"});
    const auto folder = machineFolder / fglib5::pathOf(field["folder"].text());
    const auto series = field["series"].textOr("");
    ReplayDescription replay{.files = {}, .repeat = field["repeat"].booleanOr(true)};
    std::error_code missing; // ignored: refused below, like a folder without pictures
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        const auto name = entry.path().stem().string();
        const bool wanted =
            !field["series"].given() || (name.starts_with(series) && isNumbered(name.substr(series.size())));
        if (wanted && entry.path().extension() == ".png" && pictureSize(entry.path()))
            replay.files.push_back(entry.path());
    }
    if (replay.files.empty())
        field[field["series"].given() ? "series" : "folder"].expected("PNG files in " + folder.string());
    std::ranges::sort(replay.files, {}, orderKey);
    return replay;
}

// The kind of source (scene, replay, line camera) determines the camera's other fields.
void readSource(const JsonField& field, const std::filesystem::path& machineFolder, CameraDescription& camera)
{
    camera.scene = Scene::TextChart;
    camera.lineScan = field["lineRate"].given();
    std::pair<int, int> size{0, camera.lineScan ? 1 : 0}; // the sensor's default size
    if (camera.lineScan) {
        if (field["frameRate"].given())
            field["frameRate"].expected("no frame rate for a camera with a line rate");
        if (field["scene"].given())
            field["scene"].choice({"web"});
    } else if (field["replay"].given()) {
        if (field["scene"].given())
            field["scene"].expected("no scene for a camera that replays");
        camera.replay = readReplay(field["replay"], machineFolder);
        size = pictureSize(camera.replay->files.front()).value_or(size);
    } else if (field["scene"].given()) {
        camera.scene =
            sceneNamed(field["scene"].choice({"landscape", "circuit-board", "bottles", "text-chart"}));
    }
    const auto side = [&](const char* name, int usual, int largest) {
        return static_cast<int>(usual > 0 ? field[name].integerOr(usual, 1, largest)
                                          : field[name].integer(1, largest));
    };
    camera.sensorWidth = side("sensorWidth", size.first, MAX_SENSOR_SIDE);
    camera.sensorHeight = side("sensorHeight", size.second, camera.lineScan ? 1 : MAX_SENSOR_SIDE);
    camera.frameRate = camera.lineScan ? field["lineRate"].number(0, 1'000'000)
                                       : field["frameRate"].numberOr(25, 0, 100'000);
}

CameraDescription readCamera(const JsonField& field, const std::vector<BoardDescription>& boards,
                             const std::filesystem::path& machineFolder)
{
    field.object({"board", "port", "model", "serial", "interface", "sensorWidth", "sensorHeight", "width",
                  "height", "frameRate", "lineRate", "exposure", "scene", "replay"});
    if (boards.empty())
        field["board"].expected("a board to be plugged into");
    CameraDescription camera{};
    camera.board =
        static_cast<unsigned int>(field["board"].integer(0, static_cast<std::int64_t>(boards.size()) - 1));
    const auto ports = boards[camera.board].ports;
    if (ports == 0)
        field["port"].expected("a board with ports");
    camera.port = static_cast<unsigned int>(field["port"].integer(0, ports - 1));
    camera.model = field["model"].text();
    camera.serial = field["serial"].text();
    camera.interface = field["interface"].choice({"gige", "coaxpress", "cameralink"});
    readSource(field, machineFolder, camera);
    camera.width = static_cast<int>(field["width"].integerOr(camera.sensorWidth, 1, camera.sensorWidth));
    camera.height = static_cast<int>(field["height"].integerOr(camera.sensorHeight, 1, camera.sensorHeight));
    // Short enough for a sharp picture.
    const double usual = camera.frameRate > 0 ? std::clamp(50'000 / camera.frameRate, 1.0, 2000.0) : 100;
    camera.exposure = field["exposure"].numberOr(usual, 1, 1'000'000);
    return camera;
}

std::vector<CameraDescription> readCameras(const JsonField& list, const std::vector<BoardDescription>& boards,
                                           const std::filesystem::path& machineFolder)
{
    std::vector<CameraDescription> cameras;
    for (const auto& field : list.elements()) {
        const auto camera = readCamera(field, boards, machineFolder);
        for (const auto& other : cameras) {
            if (other.board == camera.board && other.port == camera.port)
                field["port"].expected("a port without another camera");
            if (other.serial == camera.serial)
                field["serial"].expected("a serial that no other camera has");
        }
        cameras.push_back(camera);
    }
    return cameras;
}

std::string readEntry(const JsonField& field)
{
    auto entry = field.text();
    if (!CallGate::isEntry(entry))
        field.expected("the name of an entry, or '*'");
    return entry;
}

FaultDescription readFault(const JsonField& field)
{
    field.object({"entry", "nth", "code"});
    return {.entry = readEntry(field["entry"]),
            .nth = static_cast<std::uint64_t>(field["nth"].integerOr(1, 0, INT64_MAX)),
            .code = static_cast<int>(field["code"].integer(INT32_MIN, -1))};
}

DelayDescription readDelay(const JsonField& field)
{
    field.object({"entry", "microseconds"});
    return {.entry = readEntry(field["entry"]),
            .microseconds = static_cast<std::uint32_t>(field["microseconds"].integer(0, 60'000'000))};
}

} // namespace

MachineDescription readMachineDescription(const std::filesystem::path& file)
{
    const JsonDocument document({"machine description", file, FG_MACHINE_DESCRIPTION});
    const auto root = document.root();
    root.object({"name", "boards", "cameras", "faults", "delays"});
    MachineDescription machine;
    machine.name = root["name"].text();
    machine.boards = readBoards(root["boards"]);
    machine.cameras = readCameras(root["cameras"], machine.boards, file.parent_path());
    for (const auto& field : root["faults"].elements())
        machine.faults.push_back(readFault(field));
    for (const auto& field : root["delays"].elements())
        machine.delays.push_back(readDelay(field));
    return machine;
}

} // namespace simulation
