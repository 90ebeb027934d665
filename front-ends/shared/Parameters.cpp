// SPDX-License-Identifier: MIT
#include "Parameters.h"

#include "RequestError.h"
#include "Titles.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <algorithm>
#include <stdexcept>

namespace ovra::frontend {

using parameters::Parameter;

namespace {

void requireAccepted(const ParameterOwner& owner, const std::string& name, const std::string& value)
{
    const auto parameter = owner.find(name);
    if (!parameter.writable)
        throw RequestError(owner.title + ": " + name + " can only be read");
    try {
        parameters::fromText(parameter, value);
    } catch (const std::invalid_argument& error) {
        throw RequestError(owner.title + ": " + error.what());
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

// Starts the camera of a port whose generators have been switched off: the acquisition's start skipped it.
void startCamera(const core::models::HlEnvironmentLogicalPortNode& port, bool acquires)
{
    const auto camera = acquires ? cameraOf(port) : nullptr;
    if (camera && !camera->isAcquiring())
        camera->restartAcquisition();
}

/// \p acquires: a channel of the port's process is running.
void markPort(core::models::HlEnvironmentLogicalPortNode& port, bool active, bool acquires)
{
    // Before the mark, because a stop skips the cameras of marked ports.
    const auto camera = active ? cameraOf(port) : nullptr;
    if (camera && camera->isAcquiring())
        camera->stopAcquisition();
    const bool generated = port.getGeneratorActive();
    port.setGeneratorActive(active);
    if (generated && !active)
        startCamera(port, acquires);
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
    throw RequestError(title + " has no parameter '" + name + "'");
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
        const bool acquires = std::any_of(dmas.begin(), dmas.end(), [](const auto& dma) {
            const auto scene = dma->getDisplayScene();
            return scene && scene->isGrabbing();
        });
        for (const auto& port : listOf(process->getLogicalPorts()))
            markPort(*port, active, acquires);
    }
}

} // namespace ovra::frontend
