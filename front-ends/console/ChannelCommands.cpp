// SPDX-License-Identifier: MIT
// Commands for a DMA channel's buffers and its generator.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "Descriptions.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/AcquisitionBufferCountChangeCommand.h"
#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::console {

using namespace frontend;

namespace {

std::string buffersText(const display::FrameBufferGroup& group)
{
    const auto current = group.bufferCount();
    const auto requested = group.requestedBufferCount();
    if (current == requested)
        return std::to_string(current) + " buffers.";
    return std::to_string(current) + " of " + std::to_string(requested) +
           " buffers, all that the DMA memory is enough for.";
}

void buffers(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const auto dma = findDma(*board, arguments.integer(1, "DMA", 0));
    const auto group = dma->getFrameBufferGroup();
    if (!group)
        throw RequestError(channelTitle(*board, *dma) + " has no buffers");
    if (arguments.count() > 2)
        console.run(gui::commands::AcquisitionBufferCountChangeCommand::create(
            dma, arguments.integer(2, "COUNT", 1)));
    console.printer.result("buffers",
                           {{"board", std::int64_t{board->getIndex()}},
                            {"dma", std::int64_t{dma->getIndex()}},
                            {"buffers", std::int64_t{group->bufferCount()}},
                            {"requested", std::int64_t{group->requestedBufferCount()}}},
                           channelTitle(*board, *dma) + ": " + buffersText(*group));
}

void generator(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const auto dma = findDma(*board, arguments.integer(1, "DMA", 0));
    const auto owner = parameterOwner(*board, *dma);
    if (!owner.has(GENERATOR_SWITCH))
        throw RequestError(owner.title + " has no generator");
    const std::string& state = arguments.text(2);
    if (state != "on" && state != "off")
        throw RequestError("a generator is switched 'on' or 'off', not '" + state + "'");
    setParameter(board, {owner}, GENERATOR_SWITCH, state == "on" ? "1" : "0");
    console.printer.result("generator", {{"owner", owner.title}, {"on", state == "on"}},
                           owner.title + ": generator " + state + ".");
}

} // namespace

std::vector<ConsoleCommand> channelCommands()
{
    return {
        {"buffers", "BOARD DMA [COUNT]", "shows or changes the number of image buffers of a DMA channel", 2,
         3, buffers, 3},
        {"generator", "BOARD DMA on|off",
         "lets a DMA channel's images come from its pattern generator, or from the camera", 3, 3, generator,
         3},
    };
}

} // namespace ovra::console
