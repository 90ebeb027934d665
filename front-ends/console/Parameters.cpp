#include "Parameters.h"

#include "Arguments.h"
#include "Descriptions.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ovra::console {

using parameters::Parameter;

namespace {

// A bound is a floating-point number whatever it bounds; "100000" reads better than "1e+05".
std::string boundText(double bound)
{
    constexpr double MAX_EXACT_INTEGER = 1e15;
    const bool whole = std::abs(bound) < MAX_EXACT_INTEGER && std::trunc(bound) == bound;
    return parameters::toText(whole ? parameters::Value(static_cast<std::int64_t>(bound))
                                    : parameters::Value(bound));
}

std::string valueText(const Parameter& parameter)
{
    const std::string value = parameters::toText(parameter.value);
    if (std::holds_alternative<std::string>(parameter.value))
        return '"' + value + '"';
    return parameter.unit.empty() ? value : value + ' ' + parameter.unit;
}

/// What values it takes; empty when any will do.
std::string rangeText(const Parameter& parameter)
{
    if (!parameter.writable)
        return "read only";
    if (!(parameter.minimum < parameter.maximum))
        return "";
    const bool coarse = std::holds_alternative<std::int64_t>(parameter.value) && parameter.step > 1;
    return boundText(parameter.minimum) + " to " + boundText(parameter.maximum) +
           (coarse ? " in steps of " + boundText(parameter.step) : "");
}

void requireAccepted(const ParameterOwner& owner, const std::string& name, const std::string& value)
{
    const auto parameter = owner.find(name);
    if (!parameter.writable)
        throw CommandError(owner.title + ": " + name + " can only be read");
    try {
        parameters::fromText(parameter, value);
    } catch (const std::invalid_argument& error) {
        throw CommandError(owner.title + ": " + error.what());
    }
}

bool generates(const core::models::HlEnvironmentBoardNode& board,
               const core::models::HlEnvironmentDmaNode& dma)
{
    const auto list = parameterOwner(board, dma).all();
    return std::any_of(list.begin(), list.end(), [](const auto& each) {
        return each.name == GENERATOR_SWITCH && each.value == parameters::Value(std::int64_t{1});
    });
}

void markPort(core::models::HlEnvironmentLogicalPortNode& port, bool active)
{
    // Before the mark: afterwards a stop passes the camera by.
    const auto camera = active ? cameraOf(port) : nullptr;
    if (camera && camera->isAcquiring())
        camera->stopAcquisition();
    port.setGeneratorActive(active);
}

} // namespace

std::vector<Parameter> ParameterOwner::all() const
{
    return model ? model->parameters(dma) : std::vector<Parameter>();
}

Parameter ParameterOwner::find(const std::string& name) const
{
    for (const auto& parameter : all())
        if (parameter.name == name)
            return parameter;
    throw CommandError(title + " has no parameter '" + name + "'; parameters lists what there is");
}

bool ParameterOwner::has(const std::string& name) const
{
    const auto list = all();
    return std::any_of(list.begin(), list.end(), [&](const auto& each) { return each.name == name; });
}

std::vector<ParameterOwner> parameterOwners(const core::models::HlEnvironmentBoardNode& board)
{
    std::vector<ParameterOwner> owners;
    for (const auto& dma : listOf(board.getDmas()))
        owners.push_back(parameterOwner(board, *dma));
    if (owners.empty())
        owners.push_back(
            {"board " + std::to_string(board.getIndex()), 0, board.getNoDmaFrontendRegInfoModel()});
    return owners;
}

ParameterOwner parameterOwner(const core::models::HlEnvironmentBoardNode& board,
                              const core::models::HlEnvironmentDmaNode& dma)
{
    return {channelTitle(board, dma), dma.getIndex(), dma.getFrontendRegInfoModel()};
}

std::string shortText(const Parameter& parameter)
{
    return parameter.name + ' ' + valueText(parameter);
}

std::string longText(const Parameter& parameter)
{
    const std::string range = rangeText(parameter);
    return parameter.name + " = " + valueText(parameter) + (range.empty() ? "" : " (" + range + ')');
}

void setParameter(const BoardNode& board, const std::vector<ParameterOwner>& owners, const std::string& name,
                  const std::string& value)
{
    for (const auto& owner : owners)
        requireAccepted(owner, name, value);
    for (const auto& owner : owners)
        owner.model->setParameter(name, owner.dma, value);
    if (name == GENERATOR_SWITCH)
        markGenerators(board);
}

void markGenerators(const BoardNode& board)
{
    for (const auto& process : listOf(board->getProcesses())) {
        const auto dmas = listOf(process->getDmas());
        const bool active = !dmas.empty() && std::all_of(dmas.begin(), dmas.end(), [&](const auto& dma) {
            return generates(*board, *dma);
        });
        for (const auto& port : listOf(process->getLogicalPorts()))
            markPort(*port, active);
    }
}

} // namespace ovra::console
