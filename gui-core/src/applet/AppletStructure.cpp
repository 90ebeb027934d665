// SPDX-License-Identifier: MIT
#include "applet/AppletStructure.h"

#include "gui-core/keys/Keys.h"
#include "messages/CommandSubmission.h"
#include "messages/StatusText.h"

#include "fglib5/Fglib5.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <map>
#include <set>

namespace ovra::gui::applet {

using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;
using core::models::HlEnvironmentFileNode;
using core::models::HlEnvironmentLogicalPortNode;
using core::models::HlEnvironmentProcessNode;

namespace {

using DmasByIndex = std::map<unsigned int, boost::shared_ptr<HlEnvironmentDmaNode>>;
using PortsByIndex = std::map<unsigned int, boost::shared_ptr<HlEnvironmentLogicalPortNode>>;

bool generatorAvailable(const HlEnvironmentBoardNode& board)
{
    return Fg_getParameterIdByName(board.getBoardHandle(), keys::parameters::GENERATOR_SWITCH) >= 1;
}

boost::shared_ptr<HlEnvironmentProcessNode> createProcess(unsigned int index)
{
    auto process = HlEnvironmentProcessNode::create();
    process->setIndex(index);
    process->setAllInputsAvailableEntry(false);
    return process;
}

boost::shared_ptr<HlEnvironmentLogicalPortNode> createPort(const HlEnvironmentBoardNode& board,
                                                           unsigned int index)
{
    auto port = HlEnvironmentLogicalPortNode::create();
    port->setMappedPortEntry({});
    port->setIndex(index);
    port->setBoard(static_cast<unsigned int>(board.getIndex()));
    port->setBoardSerial(board.getSerial());
    return port;
}

/// Empty when the tags name no interface.
std::string portType(const std::set<std::string>& tags)
{
    if (tags.contains("interface=cl-full"))
        return "CL-FULL";
    if (tags.contains("interface=cl-medium"))
        return "CL-MEDIUM";
    if (tags.contains("interface=cl-base"))
        return "CL-BASE";
    return "";
}

std::string legacyPortType(const LegacyLayout& layout)
{
    if (layout.full)
        return "CL-FULL";
    return layout.medium ? "CL-MEDIUM" : "CL-BASE";
}

void reportFailedQuery(const HlEnvironmentBoardNode& board, const char* parameter, int code)
{
    messages::postLoadError(std::string("Error in Fg_getParameter(") + parameter +
                            "): " + messages::codeWithDescription(board.getBoardHandle(), code));
}

/// A failed query counts as 0 and posts nothing: such a process is published without channels or ports.
int queryCount(const HlEnvironmentBoardNode& board, int parameter, unsigned int process)
{
    int count = -1;
    const int code = Fg_getParameter(board.getBoardHandle(), parameter, &count, process);
    return code == FG_OK ? count : 0;
}

bool readDmas(const HlEnvironmentBoardNode& board, unsigned int process, DmasByIndex& dmas)
{
    const int count = queryCount(board, FG_NR_OF_DMAS_OF_PROCESS, process);
    for (int j = 0; j < count; ++j) {
        int value = j;
        const int code = Fg_getParameter(board.getBoardHandle(), FG_DMA_PORT, &value, process);
        if (code != FG_OK) {
            reportFailedQuery(board, "FG_DMA_PORT", code);
            return false;
        }

        const auto index = static_cast<unsigned int>(value);
        auto dma = HlEnvironmentDmaNode::create();
        dma->setProcess(process);
        dma->setBoard(static_cast<unsigned int>(board.getIndex()));
        dma->setIndex(index);
        dmas[index] = dma;
    }
    return true;
}

bool readPorts(const HlEnvironmentBoardNode& board, const HlEnvironmentFileNode& file, unsigned int process,
               PortsByIndex& ports)
{
    const int count = queryCount(board, FG_NR_OF_CAMS_OF_PROCESS, process);
    for (int j = 0; j < count; ++j) {
        int value = j;
        const int code = Fg_getParameter(board.getBoardHandle(), FG_CAM_PORT, &value, process);
        if (code != FG_OK || value < 0) {
            reportFailedQuery(board, "FG_CAM_PORT", code);
            return false;
        }

        const auto index = static_cast<unsigned int>(value);
        auto port = createPort(board, index);
        port->setProcess(process);
        const std::string type = portType(file.getTags());
        if (!type.empty())
            port->setPortType(type);
        port->setGeneratorAvailable(generatorAvailable(board));
        ports[index] = port;
    }
    return true;
}

void publishProcess(HlEnvironmentBoardNode& board, const boost::shared_ptr<HlEnvironmentProcessNode>& process,
                    const DmasByIndex& dmas, const PortsByIndex& ports)
{
    board.addProcessesEntry(process->getIndex(), process);
    for (const auto& [index, dma] : dmas)
        board.addDmasEntry(index, dma);
    for (const auto& [index, port] : ports)
        board.addLogicalPortsEntry(index, port);
    for (const auto& [index, dma] : dmas) {
        dma->addProcess(process);
        process->addDma(dma);
    }
    for (const auto& [index, port] : ports)
        process->addLogicalPort(port);
}

// Each prefix is 22 characters long, so that the numbers of the three kinds of line align.
constexpr const char* PROCESS_PREFIX = "   ......... Process: ";
constexpr const char* PORT_PREFIX = "   .... Logical Port: ";
constexpr const char* PORTS_PREFIX = "   ... Logical Ports: ";

/// Empty when the process has no ports.
std::string portLine(const HlEnvironmentProcessNode& process)
{
    std::string list;
    int count = 0;
    for (const auto ports = process.getLogicalPorts(); ports->hasNext(); ports->advance()) {
        if (count++ > 0)
            list += ", ";
        list += std::to_string(ports->current()->getIndex());
    }
    if (count == 0)
        return {};
    return (count == 1 ? PORT_PREFIX : PORTS_PREFIX) + list;
}

} // namespace

void buildLegacyStructure(HlEnvironmentBoardNode& board, const LegacyLayout& layout)
{
    for (int i = 0; i < layout.channels; ++i) {
        const auto index = static_cast<unsigned int>(i);
        // The channel gets neither process nor board, the port no process: in this layout the indices
        // coincide.
        const auto dma = HlEnvironmentDmaNode::create();
        dma->setIndex(index);
        board.addDmasEntry(index, dma);

        const auto process = createProcess(index);
        board.addProcessesEntry(index, process);

        const auto port = createPort(board, index);
        port->setPortType(legacyPortType(layout));
        board.addLogicalPortsEntry(index, port);
        port->setGeneratorAvailable(generatorAvailable(board));

        dma->addProcess(process);
        process->addDma(dma);
        process->addLogicalPort(port);
    }
}

bool buildRuntimeStructure(HlEnvironmentBoardNode& board, const HlEnvironmentFileNode& file)
{
    int processes = file.getNrOfProcesses();
    if (processes < 0) {
        const int code = Fg_getParameter(board.getBoardHandle(), FG_NR_OF_PROCESSES, &processes, 0);
        if (code != FG_OK) {
            reportFailedQuery(board, "FG_NR_OF_PROCESSES", code);
            return false;
        }
    }

    for (int p = 0; p < processes; ++p) {
        const auto index = static_cast<unsigned int>(p);
        const auto process = createProcess(index);
        DmasByIndex dmas;
        PortsByIndex ports;
        if (!readDmas(board, index, dmas) || !readPorts(board, file, index, ports))
            return false;
        publishProcess(board, process, dmas, ports);
    }
    return true;
}

void logStructure(const HlEnvironmentBoardNode& board)
{
    // Each channel lists the ports of its process again: the line is made once for all of them.
    std::map<unsigned int, std::string> portLines;
    for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance()) {
        const HlEnvironmentDmaNode& dma = *dmas->current();
        messages::postLoadStatus("Detected DMA " + std::to_string(dma.getIndex()));
        for (const auto processes = dma.getProcesses(); processes->hasNext(); processes->advance()) {
            const HlEnvironmentProcessNode& process = *processes->current();
            const auto [line, isNew] = portLines.try_emplace(process.getIndex());
            if (isNew)
                line->second = portLine(process);
            messages::postLoadStatus(PROCESS_PREFIX + std::to_string(line->first));
            if (!line->second.empty())
                messages::postLoadStatus(line->second);
        }
    }
}

void mapLogicalPorts(HlEnvironmentBoardNode& board)
{
    for (const auto ports = board.getLogicalPorts(); ports->hasNext(); ports->advance()) {
        const auto& logical = ports->current();
        const auto physical = board.getPortsEntry(logical->getIndex());
        if (!physical)
            continue;
        logical->setMappedPortEntry(physical);
        physical->setMappedLogicalPortEntry(logical);
    }
}

} // namespace ovra::gui::applet
