// SPDX-License-Identifier: MIT
// Commands that list boards, applet files, global resources and memory.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "Descriptions.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/Gui.h"
#include "gui-core/RescanAppletsCommand.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <algorithm>

namespace ovra::console {

using namespace frontend;

namespace {

void showBoards(Console& console, const Arguments&)
{
    const auto boards = allBoards();
    if (boards.empty())
        console.printer.line("There are no boards.");
    for (const auto& board : boards) {
        const auto applet = board->getLoadedAppletEntry();
        console.printer.result("board",
                               {{"board", std::int64_t{board->getIndex()}},
                                {"name", board->getBoardName()},
                                {"serial", serialText(*board)},
                                {"applet", applet ? applet->getFileName() : ""}},
                               boardTitle(*board) + ", serial " + serialText(*board) + ", " +
                                   (applet ? applet->getFileName() : "no applet"));
    }
}

/// Removes the runtime directory, where most files are, from the path.
std::string shortPath(const std::string& path)
{
    std::string root = core::HarloApplication::getRuntimeDirectory() + "/";
    std::replace(root.begin(), root.end(), '\\', '/');
    return path.starts_with(root) ? path.substr(root.size()) : path;
}

std::string describe(const core::models::HlEnvironmentFileNode& file)
{
    const std::string reason = file.getBrokenReason();
    if (!reason.empty())
        return "broken: " + reason;
    std::string text = file.getType();
    if (file.getNrOfProcesses() >= 0)
        text += ", processes: " + std::to_string(file.getNrOfProcesses());
    for (const auto& tag : file.getTags())
        text += ", " + tag;
    return text;
}

void showApplets(Console& console, const Arguments& arguments)
{
    const std::string wanted = arguments.count() > 0 ? arguments.text(0) : "";
    std::size_t shown = 0;
    for (const auto& file : allApplets()) {
        const std::string path = shortPath(file->getFilePath());
        if (path.find(wanted) == std::string::npos)
            continue;
        console.printer.result("applet",
                               {{"path", path},
                                {"kind", file->getType()},
                                {"processes", std::int64_t{file->getNrOfProcesses()}},
                                {"brokenReason", file->getBrokenReason()}},
                               path + " (" + describe(*file) + ")");
        ++shown;
    }
    if (shown == 0)
        console.printer.line(wanted.empty() ? "There are no applets."
                                            : "No applet has '" + wanted + "' in its path.");
}

const char* nameOf(core::Environment::GlobalResourceType type)
{
    switch (type) {
    case core::Environment::ResourceBoard:
        return "board";
    case core::Environment::ResourceDma:
        return "DMA channel";
    case core::Environment::ResourceCamera:
        return "camera";
    case core::Environment::ResourceProcess:
        return "process";
    case core::Environment::ResourceLogicalPort:
        return "port";
    case core::Environment::ResourceBoardCommon:
        return "board, common";
    case core::Environment::ResourceBoardEvents:
        return "board, events";
    case core::Environment::ResourceNoDmaDllProcess:
        return "DLL process without DMA channels";
    case core::Environment::ResourceNoDmaHapApplet:
        return "HAP applet as a whole";
    case core::Environment::ResourceBoardDmaGroup:
        return "group of DMA channels";
    case core::Environment::ResourceBoardPortGroup:
        return "group of ports";
    case core::Environment::ResourceNoDmaDllProcessGroup:
        return "group of DLL processes without DMA channels";
    case core::Environment::ResourceNoDmaHapAppletGroup:
        return "group of HAP applets as a whole";
    }
    return "unknown";
}

void showResources(Console& console, const Arguments&)
{
    const auto resources = listOf(gui::Gui::environment()->globalResourceModel()->root()->getChildren());
    if (resources.empty())
        console.printer.line("There are no resources: no board holds an applet.");
    for (const auto& resource : resources)
        console.printer.result(
            "resource",
            {{"key", resource->getKey()}, {"resourceType", static_cast<std::int64_t>(resource->getType())}},
            resource->getKey() + " (" + std::to_string(resource->getType()) + ": " +
                nameOf(resource->getType()) + ")");
}

void showMemory(Console& console, const Arguments&)
{
    console.printer.result("memory", memoryFields(), memoryText());
}

void rescan(Console& console, const Arguments&)
{
    console.run(gui::commands::RescanAppletsCommand::create());
    const auto boards = allBoards().size(), applets = allApplets().size();
    console.printer.result(
        "rescan",
        {{"boards", static_cast<std::int64_t>(boards)}, {"applets", static_cast<std::int64_t>(applets)}},
        "Boards: " + std::to_string(boards) + ", applets: " + std::to_string(applets) + ".");
}

} // namespace

std::vector<ConsoleCommand> resourceCommands()
{
    return {
        {"boards", "", "lists the boards", 0, 0, showBoards},
        {"applets", "[TEXT]", "lists the applet files, or those with TEXT in their paths", 0, 1, showApplets},
        {"rescan", "", "looks for boards and applet files again", 0, 0, rescan, 0},
        {"resources", "", "lists the global resources with their types", 0, 0, showResources},
        {"memory", "", "shows how much DMA memory is in use", 0, 0, showMemory},
    };
}

} // namespace ovra::console
