// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include "PluggedCameras.h"
#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/reference/BoardHandleObserver.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <array>
#include <charconv>
#include <optional>
#include <sstream>
#include <string_view>

namespace ovra::core::models {

using reference::given;
using reference::Hex;
using reference::Journal;
using reference::probe;
using reference::Unrecorded;

namespace {

std::optional<unsigned int> connectorsOf(int boardIndex)
{
    const auto runtime = reference::runtime();
    if (!runtime)
        return std::nullopt;
    std::array<char, 16> text{};
    std::size_t bytes = text.size();
    if (runtime->Fg_getSystemInformation(nullptr, FG_INFO_NR_OF_PORTS, static_cast<unsigned int>(boardIndex),
                                         text.data(), &bytes) != FG_OK)
        return std::nullopt;
    text.back() = '\0';
    const std::string_view digits = text.data();
    unsigned int count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    if (error != std::errc{} || end != digits.data() + digits.size())
        return std::nullopt;
    return count;
}

} // namespace

// For BoardHandleObserver, which is not part of the exported class.
reference::BoardHandleObserver::Signal& handleChanged(HlEnvironmentBoardNode& board);

struct HlEnvironmentBoardNode::HandleChange
{
    std::mutex mutex;
    int depth = 0;
    Fg_Struct_s* before = nullptr;
    reference::BoardHandleObserver::Signal changed;

    static HandleChange& of(HlEnvironmentBoardNode& board) { return *board.m_change; }
    friend reference::BoardHandleObserver::Signal& handleChanged(HlEnvironmentBoardNode& board)
    {
        return HandleChange::of(board).changed;
    }
};

HlEnvironmentBoardNode::HlEnvironmentBoardNode(int index, unsigned int serial, std::uint16_t boardType,
                                               const std::string& boardName)
    : m_index(index),
      m_serial(serial),
      m_boardType(boardType),
      m_boardName(boardName),
      m_change(std::make_unique<HandleChange>()),
      m_processes(boost::make_shared<EntryNode<unsigned int, HlEnvironmentProcessNode>>()),
      m_dmas(boost::make_shared<EntryNode<unsigned int, HlEnvironmentDmaNode>>()),
      m_logicalPorts(boost::make_shared<EntryNode<unsigned int, HlEnvironmentLogicalPortNode>>()),
      m_ports(boost::make_shared<EntryNode<unsigned int, HlEnvironmentPortNode>>())
{}

HlEnvironmentBoardNode::~HlEnvironmentBoardNode() = default;

boost::shared_ptr<HlEnvironmentBoardNode> HlEnvironmentBoardNode::create(int index, unsigned int serial,
                                                                         std::uint16_t boardType,
                                                                         const std::string& boardName)
{
    probe("HlEnvironmentBoardNode::create", "serial=", Hex{serial});
    const auto board = reference::liveObject(new HlEnvironmentBoardNode(index, serial, boardType, boardName));
    board->m_processes->_parent().set(board);
    board->m_dmas->_parent().set(board);
    board->m_logicalPorts->_parent().set(board);
    board->m_ports->_parent().set(board);
    return board;
}

int HlEnvironmentBoardNode::getIndex() const
{
    probe("HlEnvironmentBoardNode::getIndex", "serial=", Hex{m_serial});
    return m_index;
}

unsigned int HlEnvironmentBoardNode::getSerial() const
{
    probe("HlEnvironmentBoardNode::getSerial", "serial=", Hex{m_serial});
    return m_serial;
}

std::uint16_t HlEnvironmentBoardNode::getBoardType() const
{
    probe("HlEnvironmentBoardNode::getBoardType", "serial=", Hex{m_serial});
    return m_boardType;
}

const std::string& HlEnvironmentBoardNode::getBoardName() const
{
    probe("HlEnvironmentBoardNode::getBoardName", "serial=", Hex{m_serial});
    return m_boardName;
}

// --- the handle ---------------------------------------------------------------------------------------

Fg_Struct_s* HlEnvironmentBoardNode::getBoardHandle() const
{
    probe("HlEnvironmentBoardNode::getBoardHandle", "serial=", Hex{m_serial});
    return m_handle;
}

void HlEnvironmentBoardNode::setBoardHandle(Fg_Struct_s* handle)
{
    probe("HlEnvironmentBoardNode::setBoardHandle", "serial=", Hex{m_serial}, given(handle));
    // A change without begin and end gets its own, so that observers see it.
    beginChange();
    m_handle = handle;
    endChange();
}

void HlEnvironmentBoardNode::beginHandleChange()
{
    probe("HlEnvironmentBoardNode::beginHandleChange", "serial=", Hex{m_serial});
    beginChange();
}

void HlEnvironmentBoardNode::endHandleChange()
{
    probe("HlEnvironmentBoardNode::endHandleChange", "serial=", Hex{m_serial});
    endChange();
}

void HlEnvironmentBoardNode::beginChange()
{
    const std::lock_guard lock(m_change->mutex);
    if (m_change->depth++ == 0)
        m_change->before = m_handle;
}

void HlEnvironmentBoardNode::endChange()
{
    Fg_Struct_s* after = nullptr;
    {
        std::unique_lock lock(m_change->mutex);
        if (m_change->depth == 0) {
            lock.unlock(); // the log's callback may read the board
            return reference::log(reference::LogLevel::Error,
                                  "A board's handle change ends that never began");
        }
        if (--m_change->depth > 0)
            return;
        after = m_handle;
        if (after == m_change->before)
            return;
    }
    if (after)
        createPhysicalPorts();
    std::ostringstream line;
    line << "HlEnvironmentBoardNode::handleChanged serial=" << Hex{m_serial} << given(after);
    Journal::note(line.str());
    m_change->changed(after);
}

// One for each connector. If the runtime does not report their number, the last connector with a camera
// determines it; connectors are numbered from 0.
void HlEnvironmentBoardNode::createPhysicalPorts()
{
    const Unrecorded own;
    const auto plugged = camerasOf(*this);
    const unsigned int reached = plugged.empty() ? 0 : plugged.rbegin()->first + 1;
    const unsigned int count = connectorsOf(m_index).value_or(reached);
    for (unsigned int index = 0; index < count; ++index)
        m_ports->add(index, HlEnvironmentPortNode::create(index));
    attachCameras(*this);
}

// --- children -----------------------------------------------------------------------------------------

void HlEnvironmentBoardNode::addProcessesEntry(unsigned int index,
                                               const boost::shared_ptr<HlEnvironmentProcessNode>& process)
{
    probe("HlEnvironmentBoardNode::addProcessesEntry", "serial=", Hex{m_serial}, " process=", index);
    m_processes->add(index, process);
}

void HlEnvironmentBoardNode::addDmasEntry(unsigned int index,
                                          const boost::shared_ptr<HlEnvironmentDmaNode>& dma)
{
    probe("HlEnvironmentBoardNode::addDmasEntry", "serial=", Hex{m_serial}, " dma=", index);
    m_dmas->add(index, dma);
}

void HlEnvironmentBoardNode::addLogicalPortsEntry(unsigned int index,
                                                  const boost::shared_ptr<HlEnvironmentLogicalPortNode>& port)
{
    probe("HlEnvironmentBoardNode::addLogicalPortsEntry", "serial=", Hex{m_serial}, " port=", index);
    m_logicalPorts->add(index, port);
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentProcessNode>>
HlEnvironmentBoardNode::getProcesses() const
{
    probe("HlEnvironmentBoardNode::getProcesses", "serial=", Hex{m_serial});
    return m_processes->_children().iterate();
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentDmaNode>>
HlEnvironmentBoardNode::getDmas() const
{
    probe("HlEnvironmentBoardNode::getDmas", "serial=", Hex{m_serial});
    return m_dmas->_children().iterate();
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentLogicalPortNode>>
HlEnvironmentBoardNode::getLogicalPorts() const
{
    probe("HlEnvironmentBoardNode::getLogicalPorts", "serial=", Hex{m_serial});
    return m_logicalPorts->_children().iterate();
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentPortNode>>
HlEnvironmentBoardNode::getPorts() const
{
    probe("HlEnvironmentBoardNode::getPorts", "serial=", Hex{m_serial});
    return m_ports->_children().iterate();
}

boost::shared_ptr<HlEnvironmentPortNode> HlEnvironmentBoardNode::getPortsEntry(unsigned int index) const
{
    probe("HlEnvironmentBoardNode::getPortsEntry", "serial=", Hex{m_serial}, " port=", index);
    return m_ports->_children().find(index);
}

boost::shared_ptr<GenericModelNode> HlEnvironmentBoardNode::getDmasEntryNode() const
{
    probe("HlEnvironmentBoardNode::getDmasEntryNode", "serial=", Hex{m_serial});
    return m_dmas;
}

boost::shared_ptr<GenericModelNode> HlEnvironmentBoardNode::getProcessesEntryNode() const
{
    probe("HlEnvironmentBoardNode::getProcessesEntryNode", "serial=", Hex{m_serial});
    return m_processes;
}

boost::shared_ptr<GenericModelNode> HlEnvironmentBoardNode::getLogicalPortsEntryNode() const
{
    probe("HlEnvironmentBoardNode::getLogicalPortsEntryNode", "serial=", Hex{m_serial});
    return m_logicalPorts;
}

boost::shared_ptr<GenericModelNode> HlEnvironmentBoardNode::getPhysicalPortsEntryNode() const
{
    probe("HlEnvironmentBoardNode::getPhysicalPortsEntryNode", "serial=", Hex{m_serial});
    return m_ports;
}

// --- what the applet brings ---------------------------------------------------------------------------

boost::shared_ptr<HlEnvironmentFileNode> HlEnvironmentBoardNode::getLoadedAppletEntry() const
{
    probe("HlEnvironmentBoardNode::getLoadedAppletEntry", "serial=", Hex{m_serial});
    return m_loadedApplet.get();
}

void HlEnvironmentBoardNode::setLoadedAppletEntry(const boost::shared_ptr<HlEnvironmentFileNode>& file)
{
    probe("HlEnvironmentBoardNode::setLoadedAppletEntry", "serial=", Hex{m_serial}, given(file));
    m_loadedApplet.set(file);
}

bool HlEnvironmentBoardNode::getBoardSelectedForViewEntry() const
{
    probe("HlEnvironmentBoardNode::getBoardSelectedForViewEntry", "serial=", Hex{m_serial});
    return m_selectedForView;
}

void HlEnvironmentBoardNode::setBoardSelectedForViewEntry(bool selected)
{
    probe("HlEnvironmentBoardNode::setBoardSelectedForViewEntry", "serial=", Hex{m_serial}, ' ', selected);
    m_selectedForView = selected;
}

boost::shared_ptr<FgLibEventsModel> HlEnvironmentBoardNode::getFglibEventsModel() const
{
    probe("HlEnvironmentBoardNode::getFglibEventsModel", "serial=", Hex{m_serial});
    return m_eventsModel.get();
}

void HlEnvironmentBoardNode::setFglibEventsModel(const boost::shared_ptr<FgLibEventsModel>& events)
{
    probe("HlEnvironmentBoardNode::setFglibEventsModel", "serial=", Hex{m_serial}, given(events));
    m_eventsModel.set(events);
}

void HlEnvironmentBoardNode::setFglibEventsSignalConnection(
    const boost::shared_ptr<boost::signals2::scoped_connection>& connection)
{
    probe("HlEnvironmentBoardNode::setFglibEventsSignalConnection", "serial=", Hex{m_serial},
          given(connection));
    m_eventsConnection.set(connection);
}

FgRegisterInfo_s* HlEnvironmentBoardNode::getNoDmaFrontendRegInfoPointer() const
{
    probe("HlEnvironmentBoardNode::getNoDmaFrontendRegInfoPointer", "serial=", Hex{m_serial});
    return m_noDmaRegInfo;
}

void HlEnvironmentBoardNode::setNoDmaFrontendRegInfoPointer(FgRegisterInfo_s* info)
{
    probe("HlEnvironmentBoardNode::setNoDmaFrontendRegInfoPointer", "serial=", Hex{m_serial}, given(info));
    m_noDmaRegInfo = info;
}

boost::shared_ptr<FgLibModel> HlEnvironmentBoardNode::getNoDmaFrontendRegInfoModel() const
{
    probe("HlEnvironmentBoardNode::getNoDmaFrontendRegInfoModel", "serial=", Hex{m_serial});
    return m_noDmaRegInfoModel.get();
}

void HlEnvironmentBoardNode::setNoDmaFrontendRegInfoModel(const boost::shared_ptr<FgLibModel>& model)
{
    probe("HlEnvironmentBoardNode::setNoDmaFrontendRegInfoModel", "serial=", Hex{m_serial}, given(model));
    m_noDmaRegInfoModel.set(model);
}

} // namespace ovra::core::models

boost::signals2::connection ovra::reference::BoardHandleObserver::connect(
    const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board, const Signal::slot_type& slot)
{
    return handleChanged(*board).connect(slot);
}
