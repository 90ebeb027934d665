// SPDX-License-Identifier: MIT
#include "HardwareDiscovery.h"

#include "PluggedCameras.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-environment/reference/BoardHandleObserver.h"
#include "ovra-lib-genicam-model/GenICamModel.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace ovra::core::models {

using reference::EnvironmentChange;
using reference::RuntimeEntries;

struct FoundBoard
{
    int index;
    unsigned int serial;
    std::uint16_t type;
    std::string name;
};

namespace {

struct FoundCamera
{
    unsigned int board;
    unsigned int port;
    std::string name;
};

std::string systemText(const RuntimeEntries& runtime, FgInfoSelector selector, unsigned int argument)
{
    std::array<char, 256> text{};
    std::size_t bytes = text.size();
    const int code = runtime.Fg_getSystemInformation(nullptr, selector, argument, text.data(), &bytes);
    if (code != FG_OK)
        throw std::runtime_error(
            reference::failureText(runtime, "System information could not be read", code));
    text.back() = '\0';
    return text.data();
}

unsigned int number(const std::string& text, int base, const char* what)
{
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size())
        throw std::runtime_error(std::string("The frame-grabber runtime gives \"") + text + "\" as " + what);
    return value;
}

// Empty for a board that was unplugged: it keeps its index.
std::optional<FoundBoard> findBoard(const RuntimeEntries& runtime, unsigned int index)
{
    const int type = runtime.Fg_getBoardType(static_cast<int>(index));
    if (type == FG_DEVICE_LOST)
        return std::nullopt;
    if (type < 0)
        throw std::runtime_error(reference::failureText(
            runtime, "Type of board " + std::to_string(index) + " could not be read", type));
    const char* const name = runtime.Fg_getBoardNameByType(type);
    const unsigned int serial =
        number(systemText(runtime, FG_INFO_BOARD_SERIAL, index), 16, "a board's serial");
    return FoundBoard{static_cast<int>(index), serial, static_cast<std::uint16_t>(type),
                      name ? name : "unknown board"};
}

std::vector<FoundBoard> findBoards(const RuntimeEntries& runtime)
{
    std::vector<FoundBoard> boards;
    const unsigned int count =
        number(systemText(runtime, FG_INFO_NR_OF_BOARDS, 0), 10, "the number of boards");
    for (unsigned int index = 0; index < count; ++index)
        if (auto board = findBoard(runtime, index))
            boards.push_back(std::move(*board));
    return boards;
}

std::string cameraText(const RuntimeEntries& runtime, unsigned int board, unsigned int port,
                       FgCamString selector)
{
    std::array<char, 256> text{};
    if (runtime.FgCam_getString(board, port, selector, text.data(), text.size()) != FG_OK)
        return "unknown";
    text.back() = '\0';
    return text.data();
}

void findCamerasOf(const RuntimeEntries& runtime, unsigned int board, std::vector<FoundCamera>& cameras)
{
    const int count = runtime.FgCam_getCount(board);
    for (int position = 0; position < count; ++position) {
        const int port = runtime.FgCam_getPort(board, static_cast<unsigned int>(position));
        if (port < 0)
            continue;
        const auto plug = static_cast<unsigned int>(port);
        cameras.push_back({board, plug,
                           cameraText(runtime, board, plug, FGCAM_MODEL) + ' ' +
                               cameraText(runtime, board, plug, FGCAM_SERIAL)});
    }
}

std::vector<FoundCamera> findCameras(const RuntimeEntries& runtime, const std::vector<FoundBoard>& boards)
{
    std::vector<FoundCamera> cameras;
    if (runtime.hasCameraControl)
        for (const auto& board : boards)
            findCamerasOf(runtime, static_cast<unsigned int>(board.index), cameras);
    return cameras;
}

bool same(const HlEnvironmentBoardNode& node, const FoundBoard& board)
{
    return node.getIndex() == board.index && node.getBoardType() == board.type &&
           node.getBoardName() == board.name;
}

// The keys sort cameras by board and port as numbers.
std::string keyOf(const FoundCamera& camera)
{
    const auto padded = [](unsigned int number) {
        const std::string digits = std::to_string(number);
        return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
    };
    return "board-" + padded(camera.board) + "-port-" + padded(camera.port);
}

// A board with an applet stays in the model even if the runtime no longer lists it: its handle is freed
// through its node. While a load initialises a board, its node is about to get the handle.
bool mayGo(const HlEnvironmentRootNode& root, const HlEnvironmentBoardNode& board)
{
    return !root.getFgInitInProgress() && board.getBoardHandle() == nullptr;
}

void updateCameras(HlEnvironmentRootNode& root, const std::vector<FoundCamera>& found)
{
    std::map<std::string, FoundCamera> byKey;
    for (const auto& camera : found)
        byKey.emplace(keyOf(camera), camera);
    for (const auto nodes = root.getCameras(); nodes->hasNext(); nodes->advance()) {
        const auto& node = *nodes->current();
        const std::string key = keyOf({node.getBoard(), node.getPort(), {}});
        if (!byKey.contains(key))
            root.removeCamera(key);
    }
    for (const auto& [key, camera] : byKey) {
        auto node = root.getCamera(key);
        const bool isNew = !node || node->getName() != camera.name;
        if (isNew)
            node = HlEnvironmentCameraNode::create(camera.name, camera.board, camera.port);
        if (!node->getGenICamModelEntry())
            node->setGenICamModelEntry(GenICamModel::create(camera.board, camera.port));
        if (isNew)
            root.addCamera(key, node);
    }
}

Changes asChanges(const std::vector<FoundBoard>& boards, const std::vector<FoundCamera>& cameras)
{
    constexpr auto CAME = EnvironmentChange::Kind::Came;
    Changes present;
    for (const auto& board : boards)
        present.push_back(
            {EnvironmentChange::Subject::Board, CAME, board.index, -1, board.serial, board.name});
    for (const auto& camera : cameras)
        present.push_back({EnvironmentChange::Subject::Camera, CAME, static_cast<int>(camera.board),
                           static_cast<int>(camera.port), 0, camera.name});
    return present;
}

bool contains(const Changes& all, const EnvironmentChange& one)
{
    return std::ranges::find(all, one) != all.end();
}

} // namespace

HardwareDiscovery::HardwareDiscovery(boost::shared_ptr<HlEnvironmentRootNode> root,
                                     std::function<void()> lookAgain)
    : m_root(std::move(root)),
      m_lookAgain(std::move(lookAgain))
{}

void HardwareDiscovery::discover(Changes& changes)
{
    const auto runtime = reference::requireRuntime();
    if (runtime->Fg_InitLibraries(nullptr) != FG_OK)
        throw std::runtime_error(reference::lastFailureText(*runtime));
    const auto boards = findBoards(*runtime);
    const auto cameras = findCameras(*runtime, boards);

    const auto source = m_root->getSourcesEntry(gui::keys::SOURCE);
    updateBoards(boards);
    updateCameras(*m_root, cameras);
    for (const auto nodes = source->getBoards(); nodes->hasNext(); nodes->advance())
        attachCameras(*nodes->current());
    auto found = asChanges(boards, cameras);
    followHandles(found);
    noteChanges(std::move(found), changes);
}

void HardwareDiscovery::updateBoards(const std::vector<FoundBoard>& found)
{
    std::map<unsigned int, FoundBoard> bySerial;
    for (const auto& board : found)
        bySerial.emplace(board.serial, board);
    const auto source = m_root->getSourcesEntry(gui::keys::SOURCE);
    for (const auto nodes = source->getBoards(); nodes->hasNext(); nodes->advance())
        if (!bySerial.contains(nodes->current()->getSerial()) && mayGo(*m_root, *nodes->current()))
            replace(nodes->current(), nullptr);
    for (const auto& [serial, board] : bySerial) {
        const auto create = [&] {
            return HlEnvironmentBoardNode::create(board.index, serial, board.type, board.name);
        };
        const auto node = source->getChild(serial);
        if (!node)
            source->addChild(serial, create());
        else if (!same(*node, board) && mayGo(*m_root, *node))
            replace(node, create());
    }
}

// A load that looked the board up before may still give its handle to the old node. Only through the model can
// that handle be freed, so the old node then comes back.
void HardwareDiscovery::replace(const boost::shared_ptr<HlEnvironmentBoardNode>& old,
                                const boost::shared_ptr<HlEnvironmentBoardNode>& successor)
{
    const auto comeBack = [this, left = boost::weak_ptr<HlEnvironmentBoardNode>(old)](Fg_Struct_s* handle) {
        const auto node = handle ? left.lock() : nullptr;
        if (!node)
            return;
        const reference::Unrecorded own;
        const auto source = m_root->getSourcesEntry(gui::keys::SOURCE);
        if (source->getChild(node->getSerial()) == node)
            return;
        source->addChild(node->getSerial(), node);
        m_lookAgain();
    };
    std::erase_if(m_left, [](const auto& connection) { return !connection.connected(); });
    m_left.emplace_back(reference::BoardHandleObserver::connect(old, comeBack));
    const auto source = m_root->getSourcesEntry(gui::keys::SOURCE);
    if (successor)
        source->addChild(old->getSerial(), successor);
    else
        source->removeChild(old->getSerial());
    comeBack(old->getBoardHandle()); // it may have come before the connection
}

// An unplugged board stays in the model as long as it has a handle.
void HardwareDiscovery::followHandles(const Changes& found)
{
    m_handles.clear();
    const auto source = m_root->getSourcesEntry(gui::keys::SOURCE);
    for (const auto nodes = source->getBoards(); nodes->hasNext(); nodes->advance()) {
        const unsigned int serial = nodes->current()->getSerial();
        if (std::ranges::find(found, serial, &EnvironmentChange::serial) != found.end())
            continue;
        m_handles[serial] = reference::BoardHandleObserver::connect(
            nodes->current(), [look = m_lookAgain](Fg_Struct_s* handle) {
                if (!handle)
                    look();
            });
        if (mayGo(*m_root, *nodes->current()))
            m_lookAgain(); // its handle was freed before the connection above
    }
}

void HardwareDiscovery::noteChanges(Changes found, Changes& changes)
{
    for (auto gone : m_present) {
        if (contains(found, gone))
            continue;
        gone.kind = EnvironmentChange::Kind::Went;
        changes.push_back(gone);
    }
    for (const auto& each : found)
        if (!contains(m_present, each))
            changes.push_back(each);
    m_present = std::move(found);
}

} // namespace ovra::core::models
