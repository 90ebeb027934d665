// SPDX-License-Identifier: MIT
/// \file
/// HlEnvironmentBoardNode: a frame-grabber board, and the root of what its applet consists of.
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

/// Index, serial number, type and name never change. Everything else describes the loaded applet; a load sets
/// it step by step on the worker, an unload removes it on the GUI thread. A board without an applet has no
/// handle, no children, no models and no loaded-applet entry.
///
/// A front end reads, on any thread, and changes nothing but setBoardSelectedForViewEntry. It identifies a
/// board by its serial number: the commands take it, while the index belongs to the machine. Functions that
/// return a pointer may return null unless they say otherwise; iterators are never null.
///
/// \code
/// if (board->getBoardHandle()) // an applet is loaded
///     for (const auto dmas = board->getDmas(); dmas->hasNext(); dmas->advance())
///         if (const auto scene = dmas->current()->getDisplayScene())
///             show(scene);
/// \endcode
///
/// During a load the handle comes first and the scenes nearly last: wait for Views::onLoadAppletFinished.
class OVRA_ENVIRONMENT_API HlEnvironmentBoardNode : public GenericModelNode
{
public:
    /// A board without an applet, for the environment. Never null.
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentBoardNode>
    create(int index, unsigned int serial, std::uint16_t boardType, const std::string& boardName);
    ~HlEnvironmentBoardNode() override;

    /// The runtime's board index: the position among the machine's boards.
    int getIndex() const;
    /// Unique in the machine. Front ends show it in hexadecimal.
    unsigned int getSerial() const;
    /// The runtime's code of the board's model. It determines the folder of the board's applets.
    std::uint16_t getBoardType() const;
    /// Name of the model, such as "ovra-quad-cl".
    const std::string& getBoardName() const;

    /// The runtime's handle of the loaded applet; null without an applet. Valid until the unload, which may
    /// come at any time on the GUI thread: a front end tests it for null, and does not use it on other
    /// threads. The node does not free it: code that calls Fg_FreeGrabber also sets it to null here.
    ///
    /// Put every change between beginHandleChange and endHandleChange: observers see them as one update.
    /// setBoardHandle alone counts as such a pair.
    ///
    /// If there is a handle at the end, the board creates a physical port for each of its connectors and
    /// attaches the cameras that are plugged into them. If the runtime does not report the number of
    /// connectors, the last one with a camera determines it.
    Fg_Struct_s* getBoardHandle() const;
    void setBoardHandle(Fg_Struct_s* handle);
    /// Pairs may be nested: the outermost counts.
    virtual void beginHandleChange();
    /// Without a beginHandleChange it is logged as an error and has no effect.
    virtual void endHandleChange();

    // Children by index. Adding an existing index replaces the node; a null node is std::invalid_argument.
    // The iterators walk in the order of the indices.
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

    // The nodes that hold the children, for commands that clear them; each has this board as its parent.
    // Never null.
    boost::shared_ptr<GenericModelNode> getDmasEntryNode() const;
    boost::shared_ptr<GenericModelNode> getProcessesEntryNode() const;
    boost::shared_ptr<GenericModelNode> getLogicalPortsEntryNode() const;
    boost::shared_ptr<GenericModelNode> getPhysicalPortsEntryNode() const;

    /// The file of the loaded applet: set when the load is complete, but for an MCF file; null without an
    /// applet.
    boost::shared_ptr<HlEnvironmentFileNode> getLoadedAppletEntry() const;
    void setLoadedAppletEntry(const boost::shared_ptr<HlEnvironmentFileNode>& file);
    /// Front end: whether it shows this board. A load sets true, an unload false; the library does not read
    /// it.
    bool getBoardSelectedForViewEntry() const;
    void setBoardSelectedForViewEntry(bool selected);

    /// The board's events while an applet is loaded. A front end gets it from Views::connectFglibEvents.
    boost::shared_ptr<FgLibEventsModel> getFglibEventsModel() const;
    void setFglibEventsModel(const boost::shared_ptr<FgLibEventsModel>& events);
    /// The board keeps the front end's connection; null for none. Replacing it releases the previous one, and
    /// thus disconnects it unless somebody else holds it.
    void
    setFglibEventsSignalConnection(const boost::shared_ptr<boost::signals2::scoped_connection>& connection);

    /// Description and model of the parameters of a HAP applet, which all its DMA channels share; an applet
    /// without channels has its parameters only here. Null for a DLL applet, whose channels each have their
    /// own, and if the runtime describes no parameters. The handle owns the description.
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
