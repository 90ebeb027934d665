// SPDX-License-Identifier: MIT
/// \file
/// The structure of a loaded applet: processes, DMA channels, logical camera ports.
///
///   HlEnvironmentProcessNode       a group of DMA channels and camera ports
///   HlEnvironmentDmaNode           a DMA channel: size, buffers, parameters, display scene
///   HlEnvironmentLogicalPortNode   a camera port of the applet
///
/// A load creates the nodes, and an unload removes them. The board owns them by index. Links between them are
/// weak, so a node that the board removes disappears from every link. Numbers are 0 until they are set. Any
/// thread.
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

/// Weak links to nodes of one type, in the order in which they were added.
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

    /// Iterates over the nodes that still exist.
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

/// A process of an applet: a group of DMA channels and camera ports that work together.
class OVRA_ENVIRONMENT_API HlEnvironmentProcessNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentProcessNode> create();

    /// Number of the process in the applet, from 0.
    unsigned int getIndex() const;
    void setIndex(unsigned int index);

    /// For front ends; the library sets it to false.
    bool getAllInputsAvailableEntry() const;
    void setAllInputsAvailableEntry(bool available);

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

/// A DMA channel: delivers images from the board into buffers in memory.
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

    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentProcessNode>> getProcesses() const;
    void addProcess(const boost::weak_ptr<HlEnvironmentProcessNode>& process);

    /// Longest wait for an image, in seconds, as configured when the applet was loaded. The channel's
    /// parameter FG_TIMEOUT is what takes effect: a configuration file or a user may have changed it.
    unsigned int getAcqTimeout() const;
    void setAcqTimeout(unsigned int seconds);
    /// Number of image buffers: requested, and existing.
    unsigned int getAcqBuffersRequested() const;
    void setAcqBuffersRequested(unsigned int buffers);
    unsigned int getAcqBuffersCurrent() const;
    void setAcqBuffersCurrent(unsigned int buffers);

    /// The runtime's description of the channel's parameters; the board handle owns it.
    FgRegisterInfo_s* getFrontendRegInfoPointer() const;
    void setFrontendRegInfoPointer(FgRegisterInfo_s* info);
    /// Reads and changes these parameters. Empty if the runtime describes none.
    boost::shared_ptr<FgLibModel> getFrontendRegInfoModel() const;
    void setFrontendRegInfoModel(const boost::shared_ptr<FgLibModel>& model);

    /// The channel's image buffers, and the scene that shows its images. Both are empty before the load is
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
/// into.
class OVRA_ENVIRONMENT_API HlEnvironmentLogicalPortNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentLogicalPortNode> create();

    unsigned int getIndex() const;
    void setIndex(unsigned int index);
    unsigned int getProcess() const;
    void setProcess(unsigned int process);
    unsigned int getBoard() const;
    void setBoard(unsigned int board);
    unsigned int getBoardSerial() const;
    void setBoardSerial(unsigned int serial);
    /// The Camera Link configuration: "CL-FULL", "CL-MEDIUM", "CL-BASE"; empty for other interfaces.
    std::string getPortType() const;
    void setPortType(const std::string& type);

    /// Available: the port has an image generator. Active: the generator replaces the camera, so starts and
    /// stops skip the camera. The front end sets it, after each load and each change of FG_GEN_ENABLE.
    bool getGeneratorAvailable() const;
    void setGeneratorAvailable(bool available);
    bool getGeneratorActive() const;
    void setGeneratorActive(bool active);

    /// True if a Camera Link camera is present that is not controlled through this port. A stop skips it.
    bool getClCameraPresent() const;
    void setClCameraPresent(bool present);

    /// The physical port; empty if the port is not mapped.
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
