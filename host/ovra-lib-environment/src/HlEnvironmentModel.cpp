// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

namespace ovra::core::models {

using reference::liveObject;
using reference::probe;

// --- boards -------------------------------------------------------------------------------------------

boost::shared_ptr<HlEnvironmentBoardSourceNode> HlEnvironmentBoardSourceNode::create()
{
    return liveObject(new HlEnvironmentBoardSourceNode);
}

boost::shared_ptr<HlEnvironmentBoardNode> HlEnvironmentBoardSourceNode::getChild(unsigned int serial) const
{
    probe("HlEnvironmentBoardSourceNode::getChild", "serial=", reference::Hex{serial});
    return m_boards.find(serial);
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentBoardNode>>
HlEnvironmentBoardSourceNode::getBoards() const
{
    probe("HlEnvironmentBoardSourceNode::getBoards");
    return m_boards.iterate();
}

void HlEnvironmentBoardSourceNode::addChild(unsigned int serial,
                                            const boost::shared_ptr<HlEnvironmentBoardNode>& board)
{
    probe("HlEnvironmentBoardSourceNode::addChild", "serial=", reference::Hex{serial});
    m_boards.add(serial, board, weak_from_this());
}

bool HlEnvironmentBoardSourceNode::removeChild(unsigned int serial)
{
    probe("HlEnvironmentBoardSourceNode::removeChild", "serial=", reference::Hex{serial});
    return m_boards.remove(serial);
}

KeyedChildren<unsigned int, HlEnvironmentBoardNode>& HlEnvironmentBoardSourceNode::_children()
{
    return m_boards;
}

// --- applet files -------------------------------------------------------------------------------------

boost::shared_ptr<HlEnvironmentFileCollectionNode> HlEnvironmentFileCollectionNode::create()
{
    return liveObject(new HlEnvironmentFileCollectionNode);
}

unsigned int HlEnvironmentFileCollectionNode::getAllFilesEntryChildCount() const
{
    probe("HlEnvironmentFileCollectionNode::getAllFilesEntryChildCount");
    return static_cast<unsigned int>(m_files.count());
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentFileNode>>
HlEnvironmentFileCollectionNode::getAllFiles() const
{
    probe("HlEnvironmentFileCollectionNode::getAllFiles");
    return m_files.iterate();
}

bool HlEnvironmentFileCollectionNode::existsAllFilesEntry(const std::string& path) const
{
    probe("HlEnvironmentFileCollectionNode::existsAllFilesEntry", path);
    return m_files.find(path) != nullptr;
}

boost::shared_ptr<HlEnvironmentFileNode>
HlEnvironmentFileCollectionNode::getAllFilesEntry(const std::string& path) const
{
    probe("HlEnvironmentFileCollectionNode::getAllFilesEntry", path);
    return m_files.find(path);
}

void HlEnvironmentFileCollectionNode::addAllFilesEntry(const std::string& path,
                                                       const boost::shared_ptr<HlEnvironmentFileNode>& file)
{
    probe("HlEnvironmentFileCollectionNode::addAllFilesEntry", path);
    m_files.add(path, file, weak_from_this());
}

bool HlEnvironmentFileCollectionNode::removeAllFilesEntry(const std::string& path)
{
    probe("HlEnvironmentFileCollectionNode::removeAllFilesEntry", path);
    return m_files.remove(path);
}

KeyedChildren<std::string, HlEnvironmentFileNode>& HlEnvironmentFileCollectionNode::_children()
{
    return m_files;
}

// --- root ---------------------------------------------------------------------------------------------

HlEnvironmentRootNode::HlEnvironmentRootNode() : m_files(HlEnvironmentFileCollectionNode::create()) {}

boost::shared_ptr<HlEnvironmentRootNode> HlEnvironmentRootNode::create()
{
    const auto root = liveObject(new HlEnvironmentRootNode);
    root->m_files->_parent().set(root);
    return root;
}

boost::shared_ptr<HlEnvironmentBoardSourceNode>
HlEnvironmentRootNode::getSourcesEntry(const std::string& name) const
{
    probe("HlEnvironmentRootNode::getSourcesEntry", name);
    return m_sources.find(name);
}

boost::shared_ptr<HlEnvironmentFileCollectionNode> HlEnvironmentRootNode::getFilesEntryNode() const
{
    probe("HlEnvironmentRootNode::getFilesEntryNode");
    return m_files;
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentCameraNode>>
HlEnvironmentRootNode::getCameras() const
{
    probe("HlEnvironmentRootNode::getCameras");
    return m_cameras.iterate();
}

void HlEnvironmentRootNode::setFgInitInProgress(bool inProgress)
{
    probe("HlEnvironmentRootNode::setFgInitInProgress", inProgress);
    m_fgInitInProgress = inProgress;
}

bool HlEnvironmentRootNode::getFgInitInProgress() const
{
    probe("HlEnvironmentRootNode::getFgInitInProgress");
    return m_fgInitInProgress;
}

void HlEnvironmentRootNode::addSourcesEntry(const std::string& name,
                                            const boost::shared_ptr<HlEnvironmentBoardSourceNode>& source)
{
    probe("HlEnvironmentRootNode::addSourcesEntry", name);
    m_sources.add(name, source, weak_from_this());
}

void HlEnvironmentRootNode::addCamera(const std::string& key,
                                      const boost::shared_ptr<HlEnvironmentCameraNode>& camera)
{
    probe("HlEnvironmentRootNode::addCamera", key);
    m_cameras.add(key, camera, weak_from_this());
}

bool HlEnvironmentRootNode::removeCamera(const std::string& key)
{
    probe("HlEnvironmentRootNode::removeCamera", key);
    return m_cameras.remove(key);
}

boost::shared_ptr<HlEnvironmentCameraNode> HlEnvironmentRootNode::getCamera(const std::string& key) const
{
    probe("HlEnvironmentRootNode::getCamera", key);
    return m_cameras.find(key);
}

HlEnvironmentModel::HlEnvironmentModel() : m_root(HlEnvironmentRootNode::create()) {}

boost::shared_ptr<HlEnvironmentRootNode> HlEnvironmentModel::root() const
{
    probe("HlEnvironmentModel::root");
    return m_root;
}

} // namespace ovra::core::models
