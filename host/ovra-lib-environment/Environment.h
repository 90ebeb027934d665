// SPDX-License-Identifier: MIT
/// \file
/// Environment: boards, applet files and cameras of the machine, and the monitors that keep them up to date.
#pragma once

#include "ovra-lib-environment/Export.h"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace ovra::reference {
class EnvironmentObserver;
}

namespace ovra::core {

namespace models {
class HlEnvironmentModel;
class HlEnvironmentGlobalResourceModel;
} // namespace models

/// The environment takes boards from the frame-grabber runtime, applet files from the folders "Hardware
/// Applets" and "dll" below the runtime directory, and cameras from the runtime's camera control. Any thread
/// may call all functions.
///
/// \code
/// const auto environment = gui::Gui::environment();
/// environment->discoverResources();
/// const auto root = environment->model()->root();
/// for (const auto boards = root->getSourcesEntry("ovra")->getBoards(); boards->hasNext(); boards->advance())
///     std::cout << boards->current()->getBoardName() << '\n';
/// \endcode
class OVRA_ENVIRONMENT_API Environment
{
public:
    /// The kind of object that a global resource stands for.
    enum GlobalResourceType : int
    {
        ResourceBoard = 0,
        ResourceDma = 1,
        ResourceCamera = 2,
        ResourceProcess = 3,
        ResourceLogicalPort = 4,
        ResourceBoardCommon = 5,
        ResourceBoardEvents = 6,
        ResourceNoDmaDllProcess = 7,
        ResourceNoDmaHapApplet = 8,
        ResourceBoardDmaGroup = 9,
        ResourceBoardPortGroup = 10,
        ResourceNoDmaDllProcessGroup = 11,
        ResourceNoDmaHapAppletGroup = 12,
    };

    [[nodiscard]] static boost::shared_ptr<Environment> create();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /// Accepts the key "connector" and ignores others.
    void injectDependency(const std::string& key, const boost::any& value);

    boost::shared_ptr<models::HlEnvironmentModel> model();
    boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> globalResourceModel();

    /// On: the environment scans each file that is added at once. The initial state is off.
    void enableAutoScan(bool enable);

    /// Searches once for boards, cameras and applet files, and updates the model. Blocks.
    /// \throws std::runtime_error  if the runtime or the hardware description cannot be used; the model does
    ///     not change
    void discoverResourcesOnce();

    /// Repeats discoverResourcesOnce until two searches find the same.
    void discoverResources();

    /// Starts a thread that updates the model when applet files are added or removed, and when the runtime
    /// reports that boards or cameras were plugged or unplugged.
    void startMonitor();
    void stopMonitor();

    /// Adds the file at \p path to the file collection, whatever its folder. No effect if it does not exist.
    void forceSingleFileAddition(const std::string& path);

private:
    friend class reference::EnvironmentObserver;

    Environment();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core
