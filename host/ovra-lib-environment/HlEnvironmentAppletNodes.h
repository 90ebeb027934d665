// SPDX-License-Identifier: MIT
/// \file
/// The structure of a loaded applet: processes, DMA channels, logical camera ports.
///
///   HlEnvironmentProcessNode       a group of DMA channels and camera ports
///   HlEnvironmentDmaNode           a DMA channel: size, buffers, parameters, display scene
///   HlEnvironmentLogicalPortNode   a camera port of the applet
///
/// A load creates the nodes on the worker, and an unload removes them on the GUI thread. The board owns them
/// by index. Links between them are weak, so a node that the board removes disappears from every link once
/// nobody holds it. Hold nodes by boost::weak_ptr between events; a node that outlives its unload has no
/// buffers, no scene and no parameters, and commands skip it.
///
/// The library sets all values; a front end reads them and sets two itself, which are marked "front end".
/// Indices count from 0; numbers are 0 and texts empty until the load sets them. Any thread; each function
/// reads or changes one value. Functions that return a pointer may return null unless they say otherwise.
///
/// \code
/// for (const auto processes = board->getProcesses(); processes->hasNext(); processes->advance())
///     for (const auto dmas = processes->current()->getDmas(); dmas->hasNext(); dmas->advance()) {
///         const auto& dma = dmas->current();
///         std::cout << "process " << processes->current()->getIndex() << ", DMA " << dma->getIndex() << ": "
///                   << dma->getAcqBuffersCurrent() << " buffers\n";
///     }
/// \endcode
///
/// The nodes of a legacy applet report board 0 and process 0, whichever they belong to.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"

#include <atomic>
#include <string>

struct FgRegisterInfo_s;

namespace ovra::display {
class DisplayScene;
class FrameBufferGroup;
} // namespace ovra::display

namespace ovra::core::models {

class FgLibModel;
class HlEnvironmentDmaNode;
class HlEnvironmentLogicalPortNode;
class HlEnvironmentPortNode;
class HlEnvironmentProcessNode;

/// Weak links to nodes of one type, in the order in which they were added. Any thread.
template <class Node>
class WeakLinks
{
public:
    using Iterator = GenericModelNodeChildrenIterator<Node>;

    void add(const boost::weak_ptr<Node>& node)
    {
        const std::lock_guard lock(m_mutex);
        m_nodes.push_back(node);
    }

    /// An iterator over the nodes that still exist, never null. It keeps them alive.
    boost::shared_ptr<Iterator> iterate() const
    {
        auto alive = boost::make_shared<typename Iterator::Snapshot>();
        const std::lock_guard lock(m_mutex);
        for (const auto& node : m_nodes)
            if (auto strong = node.lock())
                alive->push_back(strong);
        return boost::make_shared<Iterator>(alive);
    }

private:
    mutable std::mutex m_mutex;
    std::vector<boost::weak_ptr<Node>> m_nodes;
};

/// A process of an applet: a group of DMA channels and camera ports that work together. In the mode
/// Gui::SyncProcess a start or stop of one reaches all of them.
class OVRA_ENVIRONMENT_API HlEnvironmentProcessNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentProcessNode> create();

    /// Number of the process in the applet, from 0.
    unsigned int getIndex() const;
    void setIndex(unsigned int index);

    /// Front end: whether all cameras that the process needs are there, if it shows that. The load sets
    /// false, and the library does not read it.
    bool getAllInputsAvailableEntry() const;
    void setAllInputsAvailableEntry(bool available);

    /// The channels and ports; an applet may have either without the other.
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentDmaNode>> getDmas() const;
    unsigned int getDmasEntryChildCount() const;
    void addDma(const boost::weak_ptr<HlEnvironmentDmaNode>& dma);

    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentLogicalPortNode>> getLogicalPorts() const;
    void addLogicalPort(const boost::weak_ptr<HlEnvironmentLogicalPortNode>& port);

private:
    HlEnvironmentProcessNode();

    std::atomic<unsigned int> m_index{0};
    std::atomic<bool> m_allInputsAvailable{false};
    WeakLinks<HlEnvironmentDmaNode> m_dmas;
    WeakLinks<HlEnvironmentLogicalPortNode> m_logicalPorts;
};

/// A DMA channel: delivers images from the board into buffers in memory. It is what StartAcquisitionCommand,
/// StopAcquisitionCommand and AcquisitionBufferCountChangeCommand take as their argument.
class OVRA_ENVIRONMENT_API HlEnvironmentDmaNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentDmaNode> create();
    ~HlEnvironmentDmaNode() override;

    /// Index on the board, not within the process.
    unsigned int getIndex() const;
    void setIndex(unsigned int index);
    /// Index of the process.
    unsigned int getProcess() const;
    void setProcess(unsigned int process);
    /// Index of the board.
    unsigned int getBoard() const;
    void setBoard(unsigned int board);
    /// Sorts channels of all boards, such as "board-0000-process-0001-dma-0002"; empty until the load is
    /// complete.
    std::string getSortKey() const;
    void setSortKey(const std::string& key);

    /// The processes that use this channel, usually one.
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentProcessNode>> getProcesses() const;
    void addProcess(const boost::weak_ptr<HlEnvironmentProcessNode>& process);

    /// Longest wait for an image, in seconds, as configured when the applet was loaded. The channel's
    /// parameter FG_TIMEOUT is what takes effect: a configuration file or a user may have changed it.
    unsigned int getAcqTimeout() const;
    void setAcqTimeout(unsigned int seconds);
    /// Number of image buffers: requested, and existing. The second is lower if the limit of DMA memory
    /// (Gui::getTotalDmaMemory) allows no more. Change it with AcquisitionBufferCountChangeCommand: the
    /// setters only store the numbers.
    unsigned int getAcqBuffersRequested() const;
    void setAcqBuffersRequested(unsigned int buffers);
    unsigned int getAcqBuffersCurrent() const;
    void setAcqBuffersCurrent(unsigned int buffers);

    /// The runtime's description of the channel's parameters; the board handle owns it, so it is valid until
    /// the unload. A front end uses the model below.
    FgRegisterInfo_s* getFrontendRegInfoPointer() const;
    void setFrontendRegInfoPointer(FgRegisterInfo_s* info);
    /// Reads and changes these parameters. Null if the runtime describes none, and after an unload. All
    /// channels of a HAP applet share one model; pass it getIndex().
    boost::shared_ptr<FgLibModel> getFrontendRegInfoModel() const;
    void setFrontendRegInfoModel(const boost::shared_ptr<FgLibModel>& model);

    /// The channel's image buffers, and the scene that shows its images. Both are null before the load is
    /// complete and after an unload.
    boost::shared_ptr<display::FrameBufferGroup> getFrameBufferGroup() const;
    void setFrameBufferGroup(const boost::shared_ptr<display::FrameBufferGroup>& group);
    boost::shared_ptr<display::DisplayScene> getDisplayScene() const;
    void setDisplayScene(const boost::shared_ptr<display::DisplayScene>& scene);

private:
    HlEnvironmentDmaNode();

    std::atomic<unsigned int> m_index{0};
    std::atomic<unsigned int> m_process{0};
    std::atomic<unsigned int> m_board{0};
    std::atomic<unsigned int> m_acqTimeout{0};
    std::atomic<unsigned int> m_acqBuffersRequested{0};
    std::atomic<unsigned int> m_acqBuffersCurrent{0};
    std::atomic<FgRegisterInfo_s*> m_regInfo{nullptr};
    Guarded<std::string> m_sortKey;
    WeakLinks<HlEnvironmentProcessNode> m_processes;
    Guarded<boost::shared_ptr<FgLibModel>> m_regInfoModel;
    Guarded<boost::shared_ptr<display::FrameBufferGroup>> m_frameBufferGroup;
    Guarded<boost::shared_ptr<display::DisplayScene>> m_displayScene;
};

/// A camera port of an applet. It is mapped to a physical port, the connector that the camera is plugged
/// into. Start and stop commands take it as their argument, to start or stop the camera.
class OVRA_ENVIRONMENT_API HlEnvironmentLogicalPortNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentLogicalPortNode> create();

    /// Index on the board, not within the process.
    unsigned int getIndex() const;
    void setIndex(unsigned int index);
    /// Index of the process.
    unsigned int getProcess() const;
    void setProcess(unsigned int process);
    /// Index and serial number of the board.
    unsigned int getBoard() const;
    void setBoard(unsigned int board);
    unsigned int getBoardSerial() const;
    void setBoardSerial(unsigned int serial);
    /// The Camera Link configuration: "CL-FULL", "CL-MEDIUM", "CL-BASE"; empty for other interfaces.
    std::string getPortType() const;
    void setPortType(const std::string& type);

    /// Available: the applet has the parameter FG_GEN_ENABLE, which switches an image generator on. Active:
    /// the generator replaces the camera, so starts, stops and comparisons of sizes skip the camera.
    ///
    /// Front end: the library does not follow the parameter. After each load and each change of FG_GEN_ENABLE
    /// set setGeneratorActive to its state, on the ports of the processes that the channel belongs to.
    bool getGeneratorAvailable() const;
    void setGeneratorAvailable(bool available);
    bool getGeneratorActive() const;
    void setGeneratorActive(bool active);

    /// True if a Camera Link camera is present that is not controlled through this port. A stop skips it.
    /// False unless a host sets it.
    bool getClCameraPresent() const;
    void setClCameraPresent(bool present);

    /// The physical port, which has the same index; null if the board has none with it. The node keeps the
    /// connector's node alive.
    boost::shared_ptr<HlEnvironmentPortNode> getMappedPortEntry() const;
    void setMappedPortEntry(const boost::shared_ptr<HlEnvironmentPortNode>& port);

private:
    HlEnvironmentLogicalPortNode();

    std::atomic<unsigned int> m_index{0};
    std::atomic<unsigned int> m_process{0};
    std::atomic<unsigned int> m_board{0};
    std::atomic<unsigned int> m_boardSerial{0};
    std::atomic<bool> m_generatorAvailable{false};
    std::atomic<bool> m_generatorActive{false};
    std::atomic<bool> m_clCameraPresent{false};
    Guarded<std::string> m_portType;
    Guarded<boost::shared_ptr<HlEnvironmentPortNode>> m_mappedPort;
};

} // namespace ovra::core::models
