// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

namespace ovra::core::models {

using reference::given;
using reference::liveObject;
using reference::probe;

// --- process ------------------------------------------------------------------------------------------

HlEnvironmentProcessNode::HlEnvironmentProcessNode() = default;

boost::shared_ptr<HlEnvironmentProcessNode> HlEnvironmentProcessNode::create()
{
    probe("HlEnvironmentProcessNode::create");
    return liveObject(new HlEnvironmentProcessNode);
}

unsigned int HlEnvironmentProcessNode::getIndex() const
{
    probe("HlEnvironmentProcessNode::getIndex");
    return m_index;
}

void HlEnvironmentProcessNode::setIndex(unsigned int index)
{
    probe("HlEnvironmentProcessNode::setIndex", "index=", index);
    m_index = index;
}

bool HlEnvironmentProcessNode::getAllInputsAvailableEntry() const
{
    probe("HlEnvironmentProcessNode::getAllInputsAvailableEntry", "process=", m_index);
    return m_allInputsAvailable;
}

void HlEnvironmentProcessNode::setAllInputsAvailableEntry(bool available)
{
    probe("HlEnvironmentProcessNode::setAllInputsAvailableEntry", "process=", m_index, ' ', available);
    m_allInputsAvailable = available;
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentDmaNode>>
HlEnvironmentProcessNode::getDmas() const
{
    probe("HlEnvironmentProcessNode::getDmas", "process=", m_index);
    return m_dmas.iterate();
}

unsigned int HlEnvironmentProcessNode::getDmasEntryChildCount() const
{
    probe("HlEnvironmentProcessNode::getDmasEntryChildCount", "process=", m_index);
    unsigned int count = 0;
    for (const auto dmas = m_dmas.iterate(); dmas->hasNext(); dmas->advance())
        ++count;
    return count;
}

void HlEnvironmentProcessNode::addDma(const boost::weak_ptr<HlEnvironmentDmaNode>& dma)
{
    probe("HlEnvironmentProcessNode::addDma", "process=", m_index);
    m_dmas.add(dma);
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentLogicalPortNode>>
HlEnvironmentProcessNode::getLogicalPorts() const
{
    probe("HlEnvironmentProcessNode::getLogicalPorts", "process=", m_index);
    return m_logicalPorts.iterate();
}

void HlEnvironmentProcessNode::addLogicalPort(const boost::weak_ptr<HlEnvironmentLogicalPortNode>& port)
{
    probe("HlEnvironmentProcessNode::addLogicalPort", "process=", m_index);
    m_logicalPorts.add(port);
}

// --- DMA channel --------------------------------------------------------------------------------------

HlEnvironmentDmaNode::HlEnvironmentDmaNode() = default;
HlEnvironmentDmaNode::~HlEnvironmentDmaNode() = default;

boost::shared_ptr<HlEnvironmentDmaNode> HlEnvironmentDmaNode::create()
{
    probe("HlEnvironmentDmaNode::create");
    return liveObject(new HlEnvironmentDmaNode);
}

unsigned int HlEnvironmentDmaNode::getIndex() const
{
    probe("HlEnvironmentDmaNode::getIndex");
    return m_index;
}

void HlEnvironmentDmaNode::setIndex(unsigned int index)
{
    probe("HlEnvironmentDmaNode::setIndex", "index=", index);
    m_index = index;
}

unsigned int HlEnvironmentDmaNode::getProcess() const
{
    probe("HlEnvironmentDmaNode::getProcess", "dma=", m_index);
    return m_process;
}

void HlEnvironmentDmaNode::setProcess(unsigned int process)
{
    probe("HlEnvironmentDmaNode::setProcess", "dma=", m_index, ' ', process);
    m_process = process;
}

unsigned int HlEnvironmentDmaNode::getBoard() const
{
    probe("HlEnvironmentDmaNode::getBoard", "dma=", m_index);
    return m_board;
}

void HlEnvironmentDmaNode::setBoard(unsigned int board)
{
    probe("HlEnvironmentDmaNode::setBoard", "dma=", m_index, ' ', board);
    m_board = board;
}

std::string HlEnvironmentDmaNode::getSortKey() const
{
    probe("HlEnvironmentDmaNode::getSortKey", "dma=", m_index);
    return m_sortKey.get();
}

void HlEnvironmentDmaNode::setSortKey(const std::string& key)
{
    probe("HlEnvironmentDmaNode::setSortKey", "dma=", m_index, ' ', key);
    m_sortKey.set(key);
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentProcessNode>>
HlEnvironmentDmaNode::getProcesses() const
{
    probe("HlEnvironmentDmaNode::getProcesses", "dma=", m_index);
    return m_processes.iterate();
}

void HlEnvironmentDmaNode::addProcess(const boost::weak_ptr<HlEnvironmentProcessNode>& process)
{
    probe("HlEnvironmentDmaNode::addProcess", "dma=", m_index);
    m_processes.add(process);
}

unsigned int HlEnvironmentDmaNode::getAcqTimeout() const
{
    probe("HlEnvironmentDmaNode::getAcqTimeout", "dma=", m_index);
    return m_acqTimeout;
}

void HlEnvironmentDmaNode::setAcqTimeout(unsigned int seconds)
{
    probe("HlEnvironmentDmaNode::setAcqTimeout", "dma=", m_index, ' ', seconds);
    m_acqTimeout = seconds;
}

unsigned int HlEnvironmentDmaNode::getAcqBuffersRequested() const
{
    probe("HlEnvironmentDmaNode::getAcqBuffersRequested", "dma=", m_index);
    return m_acqBuffersRequested;
}

void HlEnvironmentDmaNode::setAcqBuffersRequested(unsigned int buffers)
{
    probe("HlEnvironmentDmaNode::setAcqBuffersRequested", "dma=", m_index, ' ', buffers);
    m_acqBuffersRequested = buffers;
}

unsigned int HlEnvironmentDmaNode::getAcqBuffersCurrent() const
{
    probe("HlEnvironmentDmaNode::getAcqBuffersCurrent", "dma=", m_index);
    return m_acqBuffersCurrent;
}

void HlEnvironmentDmaNode::setAcqBuffersCurrent(unsigned int buffers)
{
    probe("HlEnvironmentDmaNode::setAcqBuffersCurrent", "dma=", m_index, ' ', buffers);
    m_acqBuffersCurrent = buffers;
}

FgRegisterInfo_s* HlEnvironmentDmaNode::getFrontendRegInfoPointer() const
{
    probe("HlEnvironmentDmaNode::getFrontendRegInfoPointer", "dma=", m_index);
    return m_regInfo;
}

void HlEnvironmentDmaNode::setFrontendRegInfoPointer(FgRegisterInfo_s* info)
{
    probe("HlEnvironmentDmaNode::setFrontendRegInfoPointer", "dma=", m_index, given(info));
    m_regInfo = info;
}

boost::shared_ptr<FgLibModel> HlEnvironmentDmaNode::getFrontendRegInfoModel() const
{
    probe("HlEnvironmentDmaNode::getFrontendRegInfoModel", "dma=", m_index);
    return m_regInfoModel.get();
}

void HlEnvironmentDmaNode::setFrontendRegInfoModel(const boost::shared_ptr<FgLibModel>& model)
{
    probe("HlEnvironmentDmaNode::setFrontendRegInfoModel", "dma=", m_index, given(model));
    m_regInfoModel.set(model);
}

boost::shared_ptr<display::FrameBufferGroup> HlEnvironmentDmaNode::getFrameBufferGroup() const
{
    probe("HlEnvironmentDmaNode::getFrameBufferGroup", "dma=", m_index);
    return m_frameBufferGroup.get();
}

void HlEnvironmentDmaNode::setFrameBufferGroup(const boost::shared_ptr<display::FrameBufferGroup>& group)
{
    probe("HlEnvironmentDmaNode::setFrameBufferGroup", "dma=", m_index, given(group));
    m_frameBufferGroup.set(group);
}

boost::shared_ptr<display::DisplayScene> HlEnvironmentDmaNode::getDisplayScene() const
{
    probe("HlEnvironmentDmaNode::getDisplayScene", "dma=", m_index);
    return m_displayScene.get();
}

void HlEnvironmentDmaNode::setDisplayScene(const boost::shared_ptr<display::DisplayScene>& scene)
{
    probe("HlEnvironmentDmaNode::setDisplayScene", "dma=", m_index, given(scene));
    m_displayScene.set(scene);
}

// --- logical port -------------------------------------------------------------------------------------

HlEnvironmentLogicalPortNode::HlEnvironmentLogicalPortNode() = default;

boost::shared_ptr<HlEnvironmentLogicalPortNode> HlEnvironmentLogicalPortNode::create()
{
    probe("HlEnvironmentLogicalPortNode::create");
    return liveObject(new HlEnvironmentLogicalPortNode);
}

unsigned int HlEnvironmentLogicalPortNode::getIndex() const
{
    probe("HlEnvironmentLogicalPortNode::getIndex");
    return m_index;
}

void HlEnvironmentLogicalPortNode::setIndex(unsigned int index)
{
    probe("HlEnvironmentLogicalPortNode::setIndex", "index=", index);
    m_index = index;
}

unsigned int HlEnvironmentLogicalPortNode::getProcess() const
{
    probe("HlEnvironmentLogicalPortNode::getProcess", "port=", m_index);
    return m_process;
}

void HlEnvironmentLogicalPortNode::setProcess(unsigned int process)
{
    probe("HlEnvironmentLogicalPortNode::setProcess", "port=", m_index, ' ', process);
    m_process = process;
}

unsigned int HlEnvironmentLogicalPortNode::getBoard() const
{
    probe("HlEnvironmentLogicalPortNode::getBoard", "port=", m_index);
    return m_board;
}

void HlEnvironmentLogicalPortNode::setBoard(unsigned int board)
{
    probe("HlEnvironmentLogicalPortNode::setBoard", "port=", m_index, ' ', board);
    m_board = board;
}

unsigned int HlEnvironmentLogicalPortNode::getBoardSerial() const
{
    probe("HlEnvironmentLogicalPortNode::getBoardSerial", "port=", m_index);
    return m_boardSerial;
}

void HlEnvironmentLogicalPortNode::setBoardSerial(unsigned int serial)
{
    probe("HlEnvironmentLogicalPortNode::setBoardSerial", "port=", m_index,
          " serial=", reference::Hex{serial});
    m_boardSerial = serial;
}

std::string HlEnvironmentLogicalPortNode::getPortType() const
{
    probe("HlEnvironmentLogicalPortNode::getPortType", "port=", m_index);
    return m_portType.get();
}

void HlEnvironmentLogicalPortNode::setPortType(const std::string& type)
{
    probe("HlEnvironmentLogicalPortNode::setPortType", "port=", m_index, ' ', type);
    m_portType.set(type);
}

bool HlEnvironmentLogicalPortNode::getGeneratorAvailable() const
{
    probe("HlEnvironmentLogicalPortNode::getGeneratorAvailable", "port=", m_index);
    return m_generatorAvailable;
}

void HlEnvironmentLogicalPortNode::setGeneratorAvailable(bool available)
{
    probe("HlEnvironmentLogicalPortNode::setGeneratorAvailable", "port=", m_index, ' ', available);
    m_generatorAvailable = available;
}

bool HlEnvironmentLogicalPortNode::getGeneratorActive() const
{
    probe("HlEnvironmentLogicalPortNode::getGeneratorActive", "port=", m_index);
    return m_generatorActive;
}

void HlEnvironmentLogicalPortNode::setGeneratorActive(bool active)
{
    probe("HlEnvironmentLogicalPortNode::setGeneratorActive", "port=", m_index, ' ', active);
    m_generatorActive = active;
}

bool HlEnvironmentLogicalPortNode::getClCameraPresent() const
{
    probe("HlEnvironmentLogicalPortNode::getClCameraPresent", "port=", m_index);
    return m_clCameraPresent;
}

void HlEnvironmentLogicalPortNode::setClCameraPresent(bool present)
{
    probe("HlEnvironmentLogicalPortNode::setClCameraPresent", "port=", m_index, ' ', present);
    m_clCameraPresent = present;
}

boost::shared_ptr<HlEnvironmentPortNode> HlEnvironmentLogicalPortNode::getMappedPortEntry() const
{
    probe("HlEnvironmentLogicalPortNode::getMappedPortEntry", "port=", m_index);
    return m_mappedPort.get();
}

void HlEnvironmentLogicalPortNode::setMappedPortEntry(const boost::shared_ptr<HlEnvironmentPortNode>& port)
{
    probe("HlEnvironmentLogicalPortNode::setMappedPortEntry", "port=", m_index, given(port));
    m_mappedPort.set(port);
}

} // namespace ovra::core::models
