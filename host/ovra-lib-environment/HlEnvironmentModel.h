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
/// The environment adds and removes these nodes when it searches; everybody else only reads them, except
/// getFgInitInProgress, which loads set. Any thread. Look-ups return null if there is no such node; iterators
/// and collections are never null. Nodes that one holds stay valid, also when the environment removes them.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <atomic>
#include <string>

namespace ovra::core::models {

/// The boards of one source, in the order of their serial numbers. A board that was unplugged without an
/// applet is removed; plugged in again, it is another node.
class OVRA_ENVIRONMENT_API HlEnvironmentBoardSourceNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentBoardSourceNode> create();

    /// Empty if no board has this serial number.
    boost::shared_ptr<HlEnvironmentBoardNode> getChild(unsigned int serial) const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentBoardNode>> getBoards() const;

    /// Adds a board; replaces one with the same serial number. Throws std::invalid_argument for null.
    void addChild(unsigned int serial, const boost::shared_ptr<HlEnvironmentBoardNode>& board);
    /// False if no board has this serial number.
    bool removeChild(unsigned int serial);
    KeyedChildren<unsigned int, HlEnvironmentBoardNode>& _children() override;

private:
    KeyedChildren<unsigned int, HlEnvironmentBoardNode> m_boards;
};

/// Applet files, in the order of their paths: UTF-8, with "/" between folders on every platform. A path is
/// the argument of LoadAppletCommand.
class OVRA_ENVIRONMENT_API HlEnvironmentFileCollectionNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentFileCollectionNode> create();

    /// Number of files. It may change before a following getAllFiles.
    unsigned int getAllFilesEntryChildCount() const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentFileNode>> getAllFiles() const;
    bool existsAllFilesEntry(const std::string& path) const;
    /// Empty if the collection has no such file.
    boost::shared_ptr<HlEnvironmentFileNode> getAllFilesEntry(const std::string& path) const;

    /// Adds a file; replaces one with the same path. Throws std::invalid_argument for null.
    void addAllFilesEntry(const std::string& path, const boost::shared_ptr<HlEnvironmentFileNode>& file);
    /// False if the collection has no such file.
    bool removeAllFilesEntry(const std::string& path);
    KeyedChildren<std::string, HlEnvironmentFileNode>& _children() override;

private:
    KeyedChildren<std::string, HlEnvironmentFileNode> m_files;
};

/// The root. Boards are two levels below it, files too, cameras one.
class OVRA_ENVIRONMENT_API HlEnvironmentRootNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentRootNode> create();

    /// The board source of that name; empty if there is none. The reference host always has the source
    /// gui::keys::SOURCE ("ovra"), with the boards of the runtime, and no other.
    boost::shared_ptr<HlEnvironmentBoardSourceNode> getSourcesEntry(const std::string& name) const;
    /// The applet files; never null.
    boost::shared_ptr<HlEnvironmentFileCollectionNode> getFilesEntryNode() const;
    /// Cameras in the order of board and connector index.
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentCameraNode>> getCameras() const;

    /// True while a load initialises a board on the worker. A search then leaves all boards in the model.
    void setFgInitInProgress(bool inProgress);
    bool getFgInitInProgress() const;

    // For the environment. Adding an existing key replaces the node; a null node is std::invalid_argument.
    void addSourcesEntry(const std::string& name,
                         const boost::shared_ptr<HlEnvironmentBoardSourceNode>& source);
    /// \p key: board and connector index with four digits each, "board-0000-port-0001".
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

/// Holds the root; both live as long as the environment, and longer while somebody holds them.
class OVRA_ENVIRONMENT_API HlEnvironmentModel
{
public:
    HlEnvironmentModel();
    /// Never null, and the same object each time.
    boost::shared_ptr<HlEnvironmentRootNode> root() const;

private:
    boost::shared_ptr<HlEnvironmentRootNode> m_root;
};

} // namespace ovra::core::models
