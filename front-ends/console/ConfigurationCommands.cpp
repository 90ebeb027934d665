// SPDX-License-Identifier: MIT
// Commands for parameters and configuration files.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "ParameterTexts.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"

#include "gui-core/LoadMcfCommand.h"
#include "gui-core/StoreMcfCommand.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::console {

using namespace frontend;

namespace {

/// The owners that "BOARD [DMA]" names; \p named: the optional DMA is given.
std::vector<ParameterOwner> ownersOf(const BoardNode& board, const Arguments& arguments, bool named)
{
    if (!named)
        return parameterOwners(*board);
    const int index = arguments.integer(1, "DMA", 0);
    return {parameterOwner(*board, *findDma(*board, index))};
}

void showParameters(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    for (const auto& owner : ownersOf(board, arguments, arguments.count() > 1)) {
        const auto all = owner.all();
        if (console.printer.target() != Printer::Target::Objects)
            console.printer.line(owner.title + (all.empty() ? ": no parameters" : ":"));
        for (const auto& parameter : all)
            console.printer.result("parameter", fieldsOf(owner.title, parameter), "  " + longText(parameter));
    }
}

void printParameter(Console& console, const ParameterOwner& owner, const std::string& name)
{
    const auto parameter = owner.find(name);
    console.printer.result("parameter", fieldsOf(owner.title, parameter),
                           owner.title + ": " + longText(parameter));
}

void get(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const bool named = arguments.count() > 2;
    for (const auto& owner : ownersOf(board, arguments, named))
        printParameter(console, owner, arguments.text(named ? 2 : 1));
}

void set(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const bool named = arguments.count() > 3;
    const auto owners = ownersOf(board, arguments, named);
    const std::string& name = arguments.text(named ? 2 : 1);
    setParameter(board, owners, name, arguments.text(named ? 3 : 2));
    for (const auto& owner : owners)
        printParameter(console, owner, name);
    console.views.update_dma_memory(); // another image size changes the buffers
}

void storeMcf(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const auto errorsBefore = console.printer.errorCount();
    console.run(gui::commands::StoreMcfCommand::create(board, textOf(console.outputFile(arguments.text(1)))));
    if (console.printer.errorCount() == errorsBefore)
        console.printer.result("stored",
                               {{"board", std::int64_t{board->getIndex()}}, {"file", arguments.text(1)}},
                               "Board " + std::to_string(board->getIndex()) + ": configuration stored as " +
                                   arguments.text(1) + ".");
}

void loadMcf(Console& console, const Arguments& arguments)
{
    const auto board = findBoard(arguments.text(0));
    const std::string file = textOf(console.inputFile(arguments.text(1)));
    const auto errorsBefore = console.printer.errorCount();
    console.run(gui::commands::LoadMcfCommand::create(board, file));
    if (!board->getLoadedAppletEntry() && console.printer.errorCount() == errorsBefore)
        throw RequestError("the configuration was not loaded");
    if (console.views.configurationRefused())
        throw RequestError("the applet was loaded without the configuration " + arguments.text(1));
}

} // namespace

std::vector<ConsoleCommand> configurationCommands()
{
    return {
        {"parameters", "BOARD [DMA]", "lists parameters with their values, units and ranges", 1, 2,
         showParameters},
        {"get", "BOARD [DMA] NAME", "shows a parameter of one DMA channel, or of each", 2, 3, get},
        {"set", "BOARD [DMA] NAME VALUE", "changes a parameter of one DMA channel, or of each", 3, 4, set, 3},
        {"store-mcf", "BOARD FILE.mcf", "stores the applet's name and its parameters", 2, 2, storeMcf, 2},
        {"load-mcf", "BOARD FILE.mcf", "loads the applet that the file names, and the parameters", 2, 2,
         loadMcf, 2},
    };
}

} // namespace ovra::console
