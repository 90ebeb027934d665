// SPDX-License-Identifier: MIT
/// \file
/// The environment's model from its root down: board sources, applet files, cameras.
///
///   HlEnvironmentModel               holds the root
///   HlEnvironmentRootNode            sources, files, cameras, initialisation-in-progress flag
///   HlEnvironmentBoardSourceNode     the boards of one source, by serial
///   HlEnvironmentFileCollectionNode  the applet files, by path
///
/// \code
/// const auto root = gui::Gui::environment()->model()->root();
/// const auto board = root->getSourcesEntry("ovra")->getChild(0x1a2b3c);
/// const auto file = root->getFilesEntryNode()->getAllFilesEntry(path);
/// for (const auto cameras = root->getCameras(); cameras->hasNext(); cameras->advance())
///     std::cout << cameras->current()->getName() << '\n';
/// \endcode
///
/// The environment adds and removes these nodes; clients only read them. Any thread.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <atomic>
#include <string>

namespace ovra::core::models {

/// Boards by serial number.
class OVRA_ENVIRONMENT_API HlEnvironmentBoardSourceNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentBoardSourceNode> create();

    /// Empty if no board has this serial number.
    boost::shared_ptr<HlEnvironmentBoardNode> getChild(unsigned int serial) const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentBoardNode>> getBoards() const;

    void addChild(unsigned int serial, const boost::shared_ptr<HlEnvironmentBoardNode>& board);
    bool removeChild(unsigned int serial);
    KeyedChildren<unsigned int, HlEnvironmentBoardNode>& _children() override;

private:
    KeyedChildren<unsigned int, HlEnvironmentBoardNode> m_boards;
};

/// Applet files by path, "/" between folders.
class OVRA_ENVIRONMENT_API HlEnvironmentFileCollectionNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentFileCollectionNode> create();

    unsigned int getAllFilesEntryChildCount() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentFileNode>> getAllFiles() const;
    bool existsAllFilesEntry(const std::string& path) const;
    /// Empty if the collection has no such file.
    boost::shared_ptr<HlEnvironmentFileNode> getAllFilesEntry(const std::string& path) const;

    void addAllFilesEntry(const std::string& path, const boost::shared_ptr<HlEnvironmentFileNode>& file);
    bool removeAllFilesEntry(const std::string& path);
    KeyedChildren<std::string, HlEnvironmentFileNode>& _children() override;

private:
    KeyedChildren<std::string, HlEnvironmentFileNode> m_files;
};

class OVRA_ENVIRONMENT_API HlEnvironmentRootNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentRootNode> create();

    /// The board source of that name, such as "ovra"; empty if there is none.
    boost::shared_ptr<HlEnvironmentBoardSourceNode> getSourcesEntry(const std::string& name) const;
    boost::shared_ptr<HlEnvironmentFileCollectionNode> getFilesEntryNode() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentCameraNode>> getCameras() const;

    /// True while a board is being initialised.
    void setFgInitInProgress(bool inProgress);
    bool getFgInitInProgress() const;

    void addSourcesEntry(const std::string& name,
                         const boost::shared_ptr<HlEnvironmentBoardSourceNode>& source);
    void addCamera(const std::string& key, const boost::shared_ptr<HlEnvironmentCameraNode>& camera);
    bool removeCamera(const std::string& key);
    boost::shared_ptr<HlEnvironmentCameraNode> getCamera(const std::string& key) const;

private:
    HlEnvironmentRootNode();

    KeyedChildren<std::string, HlEnvironmentBoardSourceNode> m_sources;
    KeyedChildren<std::string, HlEnvironmentCameraNode> m_cameras;
    boost::shared_ptr<HlEnvironmentFileCollectionNode> m_files;
    std::atomic<bool> m_fgInitInProgress{false};
};

class OVRA_ENVIRONMENT_API HlEnvironmentModel
{
public:
    HlEnvironmentModel();
    boost::shared_ptr<HlEnvironmentRootNode> root() const;

private:
    boost::shared_ptr<HlEnvironmentRootNode> m_root;
};

} // namespace ovra::core::models
