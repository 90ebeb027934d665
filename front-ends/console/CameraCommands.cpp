// SPDX-License-Identifier: MIT
// Commands for the cameras' parameters and for triggers.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "ParameterTexts.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/RequestError.h"

#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/reference/SoftwareTrigger.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <stdexcept>

namespace ovra::console {

using namespace frontend;

namespace {

std::string portTitle(const core::models::HlEnvironmentBoardNode& board,
                      const core::models::HlEnvironmentLogicalPortNode& port)
{
    return "board " + std::to_string(board.getIndex()) + " port " + std::to_string(port.getIndex());
}

void camera(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const auto port = findPort(*board, arguments.integer(1, "PORT", 0));
    const auto title = portTitle(*board, *port);
    const auto model = cameraOf(*port);
    if (!model)
        throw RequestError(title + " has no camera");
    if (arguments.count() == 3)
        throw RequestError("camera: a NAME needs a VALUE");
    if (arguments.count() == 4) {
        try {
            model->setParameter(arguments.text(2), arguments.text(3));
        } catch (const std::exception& error) {
            throw RequestError(title + ": " + error.what());
        }
    }
    if (arguments.count() == 2)
        console.printer.line(title + ":");
    for (const auto& parameter : model->parameters()) {
        if (arguments.count() == 2)
            console.printer.line("  " + longText(parameter));
        else if (parameter.name == arguments.text(2))
            console.printer.line(title + ": " + longText(parameter));
    }
}

void trigger(Console& console, const Arguments& arguments)
{
    const auto board = findLoadedBoard(arguments.text(0));
    const auto port = findPort(*board, arguments.integer(1, "PORT", 0));
    const int count = arguments.count() > 2 ? arguments.integer(2, "COUNT", 1) : 1;
    try {
        reference::sendSoftwareTrigger(*board, port->getIndex(), static_cast<unsigned int>(count));
    } catch (const std::runtime_error& error) {
        throw RequestError(error.what());
    }
    console.printer.line(portTitle(*board, *port) + ": " + std::to_string(count) +
                         (count == 1 ? " trigger." : " triggers."));
}

} // namespace

std::vector<ConsoleCommand> cameraCommands()
{
    return {
        {"camera", "BOARD PORT [NAME VALUE]", "shows the parameters of the camera at a port, or changes one",
         2, 4, camera, 3},
        {"trigger", "BOARD PORT [COUNT]", "sends software triggers to the camera at a port", 2, 3, trigger,
         2},
    };
}

} // namespace ovra::console
