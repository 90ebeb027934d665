#include "descriptions/MachineDescription.h"

#include "Probe.h"
#include "descriptions/JsonReader.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>

namespace simulation {

namespace {

constexpr int MAX_SENSOR_SIDE = 16384; // pixels a side
constexpr unsigned int MAX_PORTS = 256;

BoardDescription readBoard(const JsonField& field)
{
    field.object({"model", "boardType", "serial", "ports"});
    return {.model = field["model"].name(),
            .boardType = static_cast<std::uint16_t>(field["boardType"].integer(0, 65535)),
            .serial = field["serial"].hexadecimal(),
            .ports = static_cast<unsigned int>(field["ports"].integer(0, MAX_PORTS))};
}

// A board type stands for one model everywhere: folders are named after the model and found by the type.
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

CameraDescription readCamera(const JsonField& field, const std::vector<BoardDescription>& boards)
{
    field.object({"board", "port", "model", "serial", "interface", "sensorWidth", "sensorHeight", "width",
                  "height", "frameRate", "scene"});
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
    camera.sensorWidth = static_cast<int>(field["sensorWidth"].integer(1, MAX_SENSOR_SIDE));
    camera.sensorHeight = static_cast<int>(field["sensorHeight"].integer(1, MAX_SENSOR_SIDE));
    camera.width = static_cast<int>(field["width"].integerOr(camera.sensorWidth, 1, camera.sensorWidth));
    camera.height = static_cast<int>(field["height"].integerOr(camera.sensorHeight, 1, camera.sensorHeight));
    camera.frameRate = field["frameRate"].numberOr(25, 0, 100000);
    if (field["scene"].given())
        camera.scene =
            sceneNamed(field["scene"].choice({"landscape", "circuit-board", "bottles", "text-chart"}));
    else
        camera.scene = Scene::TextChart;
    return camera;
}

std::vector<CameraDescription> readCameras(const JsonField& list, const std::vector<BoardDescription>& boards)
{
    std::vector<CameraDescription> cameras;
    for (const auto& field : list.elements()) {
        const auto camera = readCamera(field, boards);
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
    if (!Probe::isEntry(entry))
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
    machine.cameras = readCameras(root["cameras"], machine.boards);
    for (const auto& field : root["faults"].elements())
        machine.faults.push_back(readFault(field));
    for (const auto& field : root["delays"].elements())
        machine.delays.push_back(readDelay(field));
    return machine;
}

} // namespace simulation
