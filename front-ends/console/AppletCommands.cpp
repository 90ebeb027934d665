// SPDX-License-Identifier: MIT
// Commands that load and unload applets and show a board's structure.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Descriptions.h"
#include "ParameterTexts.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/LoadAppletCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <algorithm>

namespace ovra::console {

using namespace frontend;

namespace {

void load(Console& console, const Arguments& arguments)
{
    const auto board = findBoard(arguments.text(0));
    const auto applet = findApplet(*board, arguments.text(1));
    const std::string mcf = arguments.count() > 2 ? textOf(console.inputFile(arguments.text(2))) : "";

    const auto errorsBefore = console.printer.errorCount();
    console.run(gui::commands::LoadAppletCommand::create(static_cast<int>(board->getSerial()),
                                                         applet->getFilePath(), mcf));
    if (!board->getLoadedAppletEntry() && console.printer.errorCount() == errorsBefore)
        throw RequestError("the applet was not loaded");
    if (console.views.configurationRefused())
        throw RequestError("the applet was loaded without the configuration " + arguments.text(2));
}

void unload(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    console.run(gui::commands::UnloadAppletCommand::create(static_cast<int>(board->getSerial())));
    if (!board->getLoadedAppletEntry())
        console.printer.result("unloaded", {{"board", std::int64_t{board->getIndex()}}},
                               "Board " + std::to_string(board->getIndex()) + " is empty.");
}

/// "name: one, two, three", broken into lines.
void printList(Printer& printer, const std::string& indent, const std::string& name,
               const std::vector<std::string>& items)
{
    constexpr std::size_t MAX_WIDTH = 100;
    std::string line = indent + name + ":";
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string item = ' ' + items[i] + (i + 1 < items.size() ? "," : "");
        if (line.size() + item.size() > MAX_WIDTH) {
            printer.line(line);
            line = indent + "   ";
        }
        line += item;
    }
    printer.line(line);
}

void showParameters(Printer& printer, const std::string& indent, const std::string& owner,
                    const std::vector<parameters::Parameter>& list)
{
    if (printer.target() == Printer::Target::Objects) {
        for (const auto& parameter : list)
            printer.result("parameter", fieldsOf(owner, parameter), "");
        return;
    }
    std::vector<std::string> items;
    for (const auto& parameter : list)
        items.push_back(shortText(parameter));
    if (!items.empty())
        printList(printer, indent, "parameters", items);
}

/// The timeout that takes effect: the channel's parameter, or for a channel without it that of the load.
std::int64_t timeoutSeconds(const std::vector<parameters::Parameter>& list,
                            const core::models::HlEnvironmentDmaNode& dma)
{
    const auto found = std::ranges::find(list, "FG_TIMEOUT", &parameters::Parameter::name);
    const auto* seconds = found == list.end() ? nullptr : std::get_if<std::int64_t>(&found->value);
    return seconds ? *seconds : std::int64_t{dma.getAcqTimeout()};
}

void showDma(Printer& printer, const core::models::HlEnvironmentBoardNode& board, std::int64_t process,
             const core::models::HlEnvironmentDmaNode& dma)
{
    const auto scene = dma.getDisplayScene();
    const auto group = dma.getFrameBufferGroup();
    const auto owner = parameterOwner(board, dma);
    const auto list = owner.all();
    const auto timeout = timeoutSeconds(list, dma);
    printer.result("dma",
                   {{"board", std::int64_t{board.getIndex()}},
                    {"process", process},
                    {"dma", std::int64_t{dma.getIndex()}},
                    {"width", std::int64_t{scene ? scene->width() : 0}},
                    {"height", std::int64_t{scene ? scene->height() : 0}},
                    {"buffers", std::int64_t{group ? group->bufferCount() : 0}},
                    {"timeoutSeconds", timeout}},
                   "    DMA " + std::to_string(dma.getIndex()) + ": " +
                       (scene ? sizeText(scene->width(), scene->height()) : "no display") +
                       (group ? ", buffers: " + std::to_string(group->bufferCount()) : "") +
                       ", timeout: " + std::to_string(timeout) + " s");
    showParameters(printer, "      ", owner.title, list);
}

/// Connector -1: none.
Fields portFields(const core::models::HlEnvironmentBoardNode& board, std::int64_t process,
                  const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto connector = port.getMappedPortEntry();
    const auto camera = cameraNodeOf(port);
    const auto model = cameraOf(port);
    return {{"board", std::int64_t{board.getIndex()}},
            {"process", process},
            {"port", std::int64_t{port.getIndex()}},
            {"portType", port.getPortType()},
            {"connector", connector ? std::int64_t{connector->getIndex()} : -1},
            {"generator", port.getGeneratorActive()},
            {"camera", camera ? camera->getName() : ""},
            {"width", std::int64_t{model ? model->width() : 0}},
            {"height", std::int64_t{model ? model->height() : 0}}};
}

void showPort(Printer& printer, const core::models::HlEnvironmentBoardNode& board, std::int64_t process,
              const core::models::HlEnvironmentLogicalPortNode& port)
{
    const std::string type = port.getPortType(), camera = cameraText(port);
    printer.result("port", portFields(board, process, port),
                   "    port " + std::to_string(port.getIndex()) + (type.empty() ? "" : " (" + type + ")") +
                       ": " + connectorText(port) + (port.getGeneratorActive() ? ", generator on" : ""));
    if (!camera.empty() && printer.target() != Printer::Target::Objects)
        printer.line("      " + camera);
}

void showBoardStructure(Printer& printer, const core::models::HlEnvironmentBoardNode& board)
{
    const bool headings = printer.target() != Printer::Target::Objects; // objects name board and process
    if (headings)
        printer.line(boardTitle(board) + ": " + board.getLoadedAppletEntry()->getFileName());
    for (const auto& process : listOf(board.getProcesses())) {
        if (headings)
            printer.line("  process " + std::to_string(process->getIndex()));
        for (const auto& dma : listOf(process->getDmas()))
            showDma(printer, board, process->getIndex(), *dma);
        for (const auto& port : listOf(process->getLogicalPorts()))
            showPort(printer, board, process->getIndex(), *port);
    }
    if (listOf(board.getDmas()).empty()) {
        const auto owner = parameterOwners(board).front();
        showParameters(printer, "  ", owner.title, owner.all());
    }
}

void showStructure(Console& console, const Arguments& arguments)
{
    if (arguments.count() > 0)
        return showBoardStructure(console.printer, *findLoadedBoard(arguments.text(0)));

    bool shown = false;
    for (const auto& board : allBoards()) {
        if (!board->getLoadedAppletEntry())
            continue;
        showBoardStructure(console.printer, *board);
        shown = true;
    }
    if (!shown)
        console.printer.line("No board holds an applet.");
}

} // namespace

std::vector<ConsoleCommand> appletCommands()
{
    return {
        {"load", "BOARD APPLET [MCF]", "loads an applet onto a board, and then a configuration file", 2, 3,
         load, 2},
        {"structure", "[BOARD]", "shows processes, DMA channels, ports, cameras and parameters", 0, 1,
         showStructure},
        {"unload", "BOARD", "takes the applet off a board", 1, 1, unload, 1},
    };
}

} // namespace ovra::console
