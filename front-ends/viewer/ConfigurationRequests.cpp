// SPDX-License-Identifier: MIT
// Configuration files: those that are installed or stored, uploads, downloads.
#include "RequestTable.h"
#include "Viewer.h"
#include "server/Message.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"

#include "gui-core/LoadMcfCommand.h"
#include "gui-core/StoreMcfCommand.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace ovra::viewer {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

struct McfFile
{
    std::string name;
    std::string origin; ///< "installed" or "stored"
    fs::path file;
};

void appendFolder(std::vector<McfFile>& list, const fs::path& folder, const std::string& origin)
{
    std::error_code ignored; // a folder that cannot be read has none
    for (const auto& entry : fs::directory_iterator(folder.empty() ? fs::path(".") : folder, ignored))
        if (entry.path().extension() == ".mcf" && entry.is_regular_file(ignored))
            list.push_back({frontend::textOf(entry.path().filename()), origin, entry.path()});
}

std::vector<McfFile> allConfigurations(const Viewer& viewer)
{
    std::vector<McfFile> list;
    appendFolder(list, frontend::pathOf(core::HarloApplication::getRuntimeDirectory()) / "mcf", "installed");
    appendFolder(list, viewer.outputFolder(), "stored");
    std::sort(list.begin(), list.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    return list;
}

/// Names from pages are looked up in the list and never used as paths.
McfFile configurationArgument(const Viewer& viewer, const json& arguments)
{
    const std::string name = textArgument(arguments, "name");
    const std::string origin = textArgument(arguments, "origin");
    for (const auto& configuration : allConfigurations(viewer))
        if (configuration.name == name && configuration.origin == origin)
            return configuration;
    throw frontend::RequestError("there is no such configuration any more");
}

std::string readText(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw frontend::RequestError("cannot read " + frontend::textOf(file));
    return {std::istreambuf_iterator<char>(stream), {}};
}

json listConfigurations(Viewer& viewer, const json&)
{
    json list = json::array();
    for (const auto& configuration : allConfigurations(viewer))
        list.push_back({{"name", configuration.name}, {"origin", configuration.origin}});
    return list;
}

json loadConfiguration(Viewer& viewer, const json& arguments)
{
    viewer.requireNoLoad();
    const auto board = boardArgument(arguments);
    const auto configuration = configurationArgument(viewer, arguments);
    viewer.run(gui::commands::LoadMcfCommand::create(board, frontend::textOf(configuration.file)));
    return nullptr;
}

json uploadConfiguration(Viewer& viewer, const json& arguments)
{
    viewer.requireNoLoad();
    const auto board = boardArgument(arguments);
    const auto file = viewer.storeUpload(textArgument(arguments, "text"), ".mcf");
    viewer.run(gui::commands::LoadMcfCommand::create(board, frontend::textOf(file)));
    return nullptr;
}

json storeConfiguration(Viewer& viewer, const json& arguments)
{
    const auto board = loadedBoardArgument(arguments);
    const auto applet = frontend::pathOf(board->getLoadedAppletEntry()->getFileName()).stem();
    const auto name = viewer.readyName(
        "board" + std::to_string(board->getIndex()) + "-" + frontend::textOf(applet), ".mcf");
    const auto file = viewer.outputFolder() / name;
    viewer.run(gui::commands::StoreMcfCommand::create(board, frontend::textOf(file)));
    return {{"name", name}, {"folder", viewer.outputFolderText()}};
}

json readConfiguration(Viewer& viewer, const json& arguments)
{
    const auto configuration = configurationArgument(viewer, arguments);
    return {{"name", configuration.name}, {"text", readText(configuration.file)}};
}

} // namespace

std::vector<RequestEntry> configurationRequests()
{
    return {{"list-configurations", listConfigurations},
            {"load-configuration", loadConfiguration},
            {"upload-configuration", uploadConfiguration},
            {"store-configuration", storeConfiguration},
            {"read-configuration", readConfiguration}};
}

} // namespace ovra::viewer
