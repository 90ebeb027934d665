// SPDX-License-Identifier: MIT
// Parameters of channels, of boards without channels, and of cameras; buffers; triggers.
#include "RequestTable.h"
#include "Viewer.h"

#include "server/Message.h"

#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/AcquisitionBufferCountChangeCommand.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/reference/SoftwareTrigger.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <limits>

namespace ovra::viewer {

using nlohmann::json;

namespace {

/// The camera at "port"; null without "port".
boost::shared_ptr<core::models::GenICamModel> cameraArgument(const frontend::BoardNode& board,
                                                             const json& arguments)
{
    if (!arguments.contains("port"))
        return nullptr;
    auto camera = frontend::cameraOf(*frontend::findPort(*board, indexArgument(arguments, "port")));
    if (!camera)
        throw frontend::RequestError("there is no camera at this port");
    return camera;
}

/// The channel "dma"; without "dma" the board itself, whose applet has no channels.
frontend::ParameterOwner ownerArgument(const frontend::BoardNode& board, const json& arguments)
{
    if (!arguments.contains("dma"))
        return frontend::parameterOwners(*board).front();
    return frontend::parameterOwner(*board, *frontend::findDma(*board, indexArgument(arguments, "dma")));
}

const char* kindOf(const parameters::Value& value)
{
    if (std::holds_alternative<std::string>(value))
        return "text";
    return std::holds_alternative<double>(value) ? "number" : "integer";
}

/// By the name: the runtime has no groups.
const char* groupOf(const std::string& name)
{
    if (name.starts_with("FG_GEN_"))
        return "Generator";
    if (name.find("TRIGGER") != std::string::npos || name.find("Trigger") != std::string::npos)
        return "Trigger";
    return name.starts_with("FG_") ? "Image" : "Others";
}

json describe(const parameters::Parameter& parameter)
{
    json choices = json::array();
    for (const auto& choice : parameter.choices)
        choices.push_back({{"value", std::to_string(choice.value)}, {"name", choice.name}});
    return {{"name", parameter.name},
            {"group", groupOf(parameter.name)},
            {"kind", kindOf(parameter.value)},
            {"value", parameters::toText(parameter.value)},
            {"unit", parameter.unit},
            {"minimum", parameter.minimum},
            {"maximum", parameter.maximum},
            {"step", parameter.step},
            {"choices", choices},
            {"writable", parameter.writable}};
}

json listParameters(Viewer&, const json& arguments)
{
    const auto board = loadedBoardArgument(arguments);
    const auto camera = cameraArgument(board, arguments);
    json list = json::array();
    for (const auto& parameter : camera ? camera->parameters() : ownerArgument(board, arguments).all())
        list.push_back(describe(parameter));
    return list;
}

json setParameter(Viewer& viewer, const json& arguments)
{
    const auto board = loadedBoardArgument(arguments);
    const std::string name = textArgument(arguments, "name");
    const std::string value = textArgument(arguments, "value");
    if (const auto camera = cameraArgument(board, arguments))
        camera->setParameter(name, value);
    else
        frontend::setParameter(board, {ownerArgument(board, arguments)}, name, value);
    viewer.countParameterChange(frontend::serialText(*board));
    viewer.refreshMachine(); // an image of another size takes other buffers
    return listParameters(viewer, arguments);
}

json setBuffers(Viewer& viewer, const json& arguments)
{
    const auto board = loadedBoardArgument(arguments);
    const auto dma = frontend::findDma(*board, indexArgument(arguments, "dma"));
    const auto count =
        static_cast<int>(numberArgument(arguments, "count", 1, std::numeric_limits<int>::max()));
    viewer.run(gui::commands::AcquisitionBufferCountChangeCommand::create(dma, count));
    return nullptr;
}

json trigger(Viewer&, const json& arguments)
{
    const auto board = loadedBoardArgument(arguments);
    const auto port = frontend::findPort(*board, indexArgument(arguments, "port"));
    reference::sendSoftwareTrigger(*board, port->getIndex(), 1);
    return nullptr;
}

} // namespace

std::vector<RequestEntry> parameterRequests()
{
    return {{"list-parameters", listParameters},
            {"set-parameter", setParameter},
            {"set-buffers", setBuffers},
            {"trigger", trigger}};
}

} // namespace ovra::viewer
