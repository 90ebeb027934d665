// SPDX-License-Identifier: MIT
/// \file
/// HlEnvironmentBoardNode: a frame-grabber board.
#pragma once

#include "ovra-lib-environment/Export.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"

#include <boost/signals2/connection.hpp>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

struct Fg_Struct_s;
struct FgRegisterInfo_s;

namespace ovra::core::models {

class FgLibEventsModel;
class FgLibModel;
class HlEnvironmentFileNode;
class HlEnvironmentPortNode;

/// Index, serial number, type and name never change. Everything else describes the loaded applet. A board
/// without an applet has no handle, no children, no models and no loaded-applet entry.
///
/// \code
/// if (board->getBoardHandle()) // an applet is loaded
///     for (const auto dmas = board->getDmas(); dmas->hasNext(); dmas->advance())
///         show(dmas->current()->getDisplayScene());
/// \endcode
class OVRA_ENVIRONMENT_API HlEnvironmentBoardNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentBoardNode>
    create(int index, unsigned int serial, std::uint16_t boardType, const std::string& boardName);
    ~HlEnvironmentBoardNode() override;

    /// The runtime's board index: the position among the machine's boards.
    int getIndex() const;
    unsigned int getSerial() const;
    std::uint16_t getBoardType() const;
    const std::string& getBoardName() const;

    /// The runtime's handle of the loaded applet; null without an applet. The node does not free it: code
    /// that calls Fg_FreeGrabber also sets it to null here.
    ///
    /// Put every change between beginHandleChange and endHandleChange: observers see them as one update.
    /// setBoardHandle alone counts as such a pair.
    ///
    /// If there is a handle at the end, the board creates a physical port for each of its connectors and
    /// attaches the cameras that are plugged into them. If the runtime does not report the number of
    /// connectors, the last one with a camera determines it.
    Fg_Struct_s* getBoardHandle() const;
    void setBoardHandle(Fg_Struct_s* handle);
    virtual void beginHandleChange();
    virtual void endHandleChange();

    // Children by index. Adding an existing index replaces the node.
    void addProcessesEntry(unsigned int index, const boost::shared_ptr<HlEnvironmentProcessNode>& process);
    void addDmasEntry(unsigned int index, const boost::shared_ptr<HlEnvironmentDmaNode>& dma);
    void addLogicalPortsEntry(unsigned int index,
                              const boost::shared_ptr<HlEnvironmentLogicalPortNode>& port);
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentProcessNode>> getProcesses() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentDmaNode>> getDmas() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentLogicalPortNode>> getLogicalPorts() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentPortNode>> getPorts() const;
    /// The physical port; empty if the board has none with this index.
    boost::shared_ptr<HlEnvironmentPortNode> getPortsEntry(unsigned int index) const;

    // The nodes that hold the children, to clear them; each has this board as its parent.
    boost::shared_ptr<GenericModelNode> getDmasEntryNode() const;
    boost::shared_ptr<GenericModelNode> getProcessesEntryNode() const;
    boost::shared_ptr<GenericModelNode> getLogicalPortsEntryNode() const;
    boost::shared_ptr<GenericModelNode> getPhysicalPortsEntryNode() const;

    boost::shared_ptr<HlEnvironmentFileNode> getLoadedAppletEntry() const;
    void setLoadedAppletEntry(const boost::shared_ptr<HlEnvironmentFileNode>& file);
    /// True while the board is selected in the front end.
    bool getBoardSelectedForViewEntry() const;
    void setBoardSelectedForViewEntry(bool selected);

    boost::shared_ptr<FgLibEventsModel> getFglibEventsModel() const;
    void setFglibEventsModel(const boost::shared_ptr<FgLibEventsModel>& events);
    /// The board keeps the connection. Replacing it disconnects the previous one.
    void
    setFglibEventsSignalConnection(const boost::shared_ptr<boost::signals2::scoped_connection>& connection);

    /// Description and model of the parameters of a HAP applet, which all its DMA channels share. Empty for a
    /// DLL applet, whose channels each have their own.
    FgRegisterInfo_s* getNoDmaFrontendRegInfoPointer() const;
    void setNoDmaFrontendRegInfoPointer(FgRegisterInfo_s* info);
    boost::shared_ptr<FgLibModel> getNoDmaFrontendRegInfoModel() const;
    void setNoDmaFrontendRegInfoModel(const boost::shared_ptr<FgLibModel>& model);

protected:
    HlEnvironmentBoardNode(int index, unsigned int serial, std::uint16_t boardType,
                           const std::string& boardName);

private:
    struct HandleChange;

    void beginChange();
    void endChange();
    void createPhysicalPorts();

    const int m_index;
    const unsigned int m_serial;
    const std::uint16_t m_boardType;
    const std::string m_boardName;
    std::atomic<Fg_Struct_s*> m_handle{nullptr};
    const std::unique_ptr<HandleChange> m_change;
    std::atomic<bool> m_selectedForView{false};
    std::atomic<FgRegisterInfo_s*> m_noDmaRegInfo{nullptr};
    boost::shared_ptr<EntryNode<unsigned int, HlEnvironmentProcessNode>> m_processes;
    boost::shared_ptr<EntryNode<unsigned int, HlEnvironmentDmaNode>> m_dmas;
    boost::shared_ptr<EntryNode<unsigned int, HlEnvironmentLogicalPortNode>> m_logicalPorts;
    boost::shared_ptr<EntryNode<unsigned int, HlEnvironmentPortNode>> m_ports;
    Guarded<boost::shared_ptr<HlEnvironmentFileNode>> m_loadedApplet;
    Guarded<boost::shared_ptr<FgLibEventsModel>> m_eventsModel;
    Guarded<boost::shared_ptr<boost::signals2::scoped_connection>> m_eventsConnection;
    Guarded<boost::shared_ptr<FgLibModel>> m_noDmaRegInfoModel;
};

} // namespace ovra::core::models
