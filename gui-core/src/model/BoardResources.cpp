// SPDX-License-Identifier: MIT
#include "model/BoardResources.h"

#include "gui-core/Gui.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <iomanip>
#include <locale>
#include <set>
#include <sstream>
#include <string>

namespace ovra::gui::model {

using core::Environment;
using core::models::GenericModelNode;
using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentGlobalResourceNode;
using core::models::HlEnvironmentGlobalResourceRootNode;
using core::models::HlEnvironmentProcessNode;

namespace {

using NodePointer = boost::shared_ptr<GenericModelNode>;

boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> resourceRoot()
{
    return Gui::environment()->globalResourceModel()->root();
}

std::ostringstream keyStream()
{
    std::ostringstream stream;
    // A global locale would group the digits.
    stream.imbue(std::locale::classic());
    // Otherwise a stream that runs out of memory truncates the key without an error.
    stream.exceptions(std::ios_base::badbit);
    return stream;
}

/// "board-" and the serial in lowercase hexadecimal, without padding: what every key of a board begins with.
std::string boardKey(unsigned int serial)
{
    auto key = keyStream();
    key << "board-" << std::hex << serial;
    return key.str();
}

/// "board-0000-process-0001-dma-0002": orders DMA channels by board index, process and channel. Unlike the
/// resource keys it has the board's index, not its serial.
std::string dmaSortKey(int board, unsigned int process, unsigned int dma)
{
    auto key = keyStream();
    key << std::setfill('0') << "board-" << std::setw(4) << board << "-process-" << std::setw(4) << process
        << "-dma-" << std::setw(4) << dma;
    return key.str();
}

/// Registers the resources of one board.
class Registration
{
public:
    Registration(HlEnvironmentBoardNode& board, AppletType type)
        : m_board(board),
          m_node(board.shared_from_this()),
          m_isHap(type == AppletType::Hap),
          m_key(boardKey(board.getSerial())),
          m_root(resourceRoot())
    {}

    void registerAll()
    {
        add(Environment::ResourceBoard, m_key, m_node);
        add(Environment::ResourceBoardDmaGroup, m_key + "-group-dmas", m_node);
        add(Environment::ResourceBoardPortGroup, m_key + "-group-ports", m_node);
        if (m_isHap)
            add(Environment::ResourceNoDmaHapAppletGroup, m_key + "-group-no-dma-hap-applet", m_node);
        else
            add(Environment::ResourceNoDmaDllProcessGroup, m_key + "-group-no-dma-dll-processes", m_node);
        add(Environment::ResourceBoardCommon, m_key + "-common", m_node);
        add(Environment::ResourceBoardEvents, m_key + "-events", m_node);
        for (const auto processes = m_board.getProcesses(); processes->hasNext(); processes->advance())
            registerProcess(processes->current());
        if (m_isHap)
            add(Environment::ResourceNoDmaHapApplet, m_key + "-nodma-hap-applet", m_node);
    }

private:
    void registerProcess(const boost::shared_ptr<HlEnvironmentProcessNode>& process)
    {
        const std::string key = m_key + "-process-" + std::to_string(process->getIndex());
        add(Environment::ResourceProcess, key, process);
        for (const auto dmas = process->getDmas(); dmas->hasNext(); dmas->advance()) {
            const auto& dma = dmas->current();
            add(Environment::ResourceDma, key + "-dma-" + std::to_string(dma->getIndex()), dma, process);
            dma->setSortKey(dmaSortKey(m_board.getIndex(), process->getIndex(), dma->getIndex()));
        }
        // Here the process is both the resource and its own parent.
        if (!m_isHap && process->getDmasEntryChildCount() == 0)
            add(Environment::ResourceNoDmaDllProcess, key + "-nodma-dll-process", process, process);
        for (const auto ports = process->getLogicalPorts(); ports->hasNext(); ports->advance()) {
            const auto& port = ports->current();
            add(Environment::ResourceLogicalPort, key + "-port-" + std::to_string(port->getIndex()), port,
                process);
        }
    }

    void add(Environment::GlobalResourceType type, const std::string& key, const NodePointer& resource,
             const NodePointer& parent = {})
    {
        const auto node = HlEnvironmentGlobalResourceNode::create();
        node->setType(type);
        node->setResource(resource);
        if (parent)
            node->setParentResource(parent);
        node->setKey(key);
        m_root->addChild(key, node);
    }

    HlEnvironmentBoardNode& m_board;
    const NodePointer m_node;
    const bool m_isHap;
    const std::string m_key;
    const boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> m_root;
};

/// Whether the node is a child of one of the board's entry nodes.
bool liesOnBoard(GenericModelNode& node, const HlEnvironmentBoardNode& board)
{
    const NodePointer entry = node._parent().get();
    return entry && entry->_parent().get().get() == &board;
}

/// Whether \p resource stands for \p board or for something on it. False when its node no longer exists.
bool belongsToBoard(const HlEnvironmentGlobalResourceNode& resource, const HlEnvironmentBoardNode& board)
{
    switch (resource.getType()) {
    case Environment::ResourceDma:
    case Environment::ResourceProcess:
    case Environment::ResourceLogicalPort:
    case Environment::ResourceNoDmaDllProcess: {
        const NodePointer node = resource.getResource().lock();
        return node && liesOnBoard(*node, board);
    }
    case Environment::ResourceBoard:
    case Environment::ResourceBoardCommon:
    case Environment::ResourceBoardEvents:
    case Environment::ResourceNoDmaHapApplet:
    case Environment::ResourceBoardDmaGroup:
    case Environment::ResourceBoardPortGroup:
    case Environment::ResourceNoDmaDllProcessGroup:
    case Environment::ResourceNoDmaHapAppletGroup:
        return resource.getResource().lock().get() == &board;
    default:
        return false;
    }
}

} // namespace

void registerBoardResources(HlEnvironmentBoardNode& board, AppletType type)
{
    Registration(board, type).registerAll();
}

void removeBoardResources(const HlEnvironmentBoardNode& board)
{
    const auto root = resourceRoot();
    std::set<std::string> keys;
    for (const auto resources = root->getChildren(); resources->hasNext(); resources->advance())
        if (belongsToBoard(*resources->current(), board))
            keys.insert(resources->current()->getKey());
    for (const auto& key : keys)
        root->removeChild(key);
}

} // namespace ovra::gui::model
