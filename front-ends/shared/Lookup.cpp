// SPDX-License-Identifier: MIT
#include "Lookup.h"

#include "RequestError.h"

#include "gui-core/Gui.h"
#include "gui-core/keys/Keys.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

namespace ovra::frontend {

namespace {

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const auto& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::optional<unsigned int> readNumber(std::string_view text, int base)
{
    unsigned int number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, base);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return number;
}

std::optional<unsigned int> readSerial(std::string_view text)
{
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    return readNumber(text, 16);
}

std::string listOfBoards()
{
    std::vector<std::string> indices;
    for (const auto& board : allBoards())
        indices.push_back(std::to_string(board->getIndex()));
    return indices.empty() ? "there are no boards" : "boards are " + joined(indices);
}

/// The model's paths have "/" on every platform.
std::string withSlashes(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

bool namesFile(const std::string& text, const std::string& path)
{
    return path == text || path.ends_with("/" + text);
}

bool liesInFolder(const std::string& path, const std::string& folder)
{
    return path.find("/" + folder + "/") != std::string::npos;
}

template <class Node>
boost::shared_ptr<Node> findByIndex(const std::vector<boost::shared_ptr<Node>>& nodes, int index,
                                    const std::string& what,
                                    const core::models::HlEnvironmentBoardNode& board)
{
    std::vector<std::string> indices;
    for (const auto& node : nodes) {
        if (node->getIndex() == static_cast<unsigned int>(index))
            return node;
        indices.push_back(std::to_string(node->getIndex()));
    }
    throw RequestError("board " + std::to_string(board.getIndex()) + " has no " + what + " " +
                       std::to_string(index) +
                       (indices.empty() ? "; it has none" : "; it has " + joined(indices)));
}

} // namespace

std::vector<BoardNode> allBoards()
{
    const auto source = gui::Gui::environment()->model()->root()->getSourcesEntry(gui::keys::SOURCE);
    if (!source)
        return {};
    auto boards = listOf(source->getBoards());
    std::sort(boards.begin(), boards.end(),
              [](const auto& left, const auto& right) { return left->getIndex() < right->getIndex(); });
    return boards;
}

std::vector<FileNode> allApplets()
{
    return listOf(gui::Gui::environment()->model()->root()->getFilesEntryNode()->getAllFiles());
}

BoardNode findBoard(const std::string& text)
{
    const auto boards = allBoards();
    const auto index = readNumber(text, 10);
    for (const auto& board : boards)
        if (index && board->getIndex() == static_cast<int>(*index))
            return board;
    const auto serial = readSerial(text);
    for (const auto& board : boards)
        if (serial && board->getSerial() == *serial)
            return board;
    throw RequestError("unknown board '" + text + "'; " + listOfBoards());
}

BoardNode findLoadedBoard(const std::string& text)
{
    const auto board = findBoard(text);
    if (!board->getLoadedAppletEntry())
        throw RequestError("board " + std::to_string(board->getIndex()) + " holds no applet");
    return board;
}

BoardNode boardOfSerial(unsigned int serial)
{
    const auto source = gui::Gui::environment()->model()->root()->getSourcesEntry(gui::keys::SOURCE);
    return source ? source->getChild(serial) : BoardNode();
}

FileNode findApplet(const core::models::HlEnvironmentBoardNode& board, const std::string& text)
{
    const std::string wanted = withSlashes(text);
    std::vector<FileNode> matches;
    for (const auto& file : allApplets())
        if (namesFile(wanted, file->getFilePath()))
            matches.push_back(file);
    if (matches.empty())
        throw RequestError("unknown applet '" + text + "'");
    if (matches.size() == 1)
        return matches.front();

    const auto ownEnd = std::partition(matches.begin(), matches.end(), [&](const auto& file) {
        return liesInFolder(file->getFilePath(), board.getBoardName());
    });
    if (ownEnd - matches.begin() == 1)
        return matches.front();

    std::vector<std::string> paths;
    for (const auto& file : matches)
        paths.push_back(file->getFilePath());
    throw RequestError("'" + text + "' can be " + joined(paths));
}

DmaNode findDma(const core::models::HlEnvironmentBoardNode& board, int index)
{
    return findByIndex(listOf(board.getDmas()), index, "DMA channel", board);
}

PortNode findPort(const core::models::HlEnvironmentBoardNode& board, int index)
{
    return findByIndex(listOf(board.getLogicalPorts()), index, "port", board);
}

ProcessNode findProcess(const core::models::HlEnvironmentBoardNode& board, int index)
{
    return findByIndex(listOf(board.getProcesses()), index, "process", board);
}

boost::shared_ptr<core::models::HlEnvironmentCameraNode>
cameraNodeOf(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto physical = port.getMappedPortEntry();
    return physical ? physical->getConnectedCameraEntry() : nullptr;
}

boost::shared_ptr<core::models::GenICamModel> cameraOf(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto camera = cameraNodeOf(port);
    return camera ? camera->getGenICamModelEntry() : nullptr;
}

} // namespace ovra::frontend
