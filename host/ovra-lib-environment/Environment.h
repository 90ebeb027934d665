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

/// Boards and cameras come from the frame-grabber runtime (cameras only if it has the functions of
/// fglib5/CameraControl.h), applet files from the folders "Hardware Applets" and "dll" below
/// HarloApplication::getRuntimeDirectory.
///
/// The library's commands search, and start and stop the monitor. A front end reads the model:
///
/// \code
/// const auto root = gui::Gui::environment()->model()->root();
/// const auto source = root->getSourcesEntry(gui::keys::SOURCE); // the boards that the runtime has
/// for (const auto boards = source->getBoards(); boards->hasNext(); boards->advance())
///     std::cout << boards->current()->getBoardName() << '\n';
/// \endcode
///
/// Any thread may call all functions. One search runs at a time; another waits for it. The model changes on
/// the thread that searches: the caller's, or the monitor's. reference::EnvironmentObserver signals changes.
class OVRA_ENVIRONMENT_API Environment
{
public:
    /// The kind of object that a global resource stands for (HlEnvironmentGlobalResourceModel.h). It
    /// determines the class of the resource's node: board, process, channel or port. The library uses
    /// ResourceDma and ResourceLogicalPort to find what an acquisition reaches; the others serve views that
    /// show one page for each kind. The numbers are part of the interface.
    enum GlobalResourceType : int
    {
        ResourceBoard = 0,                 ///< board
        ResourceDma = 1,                   ///< DMA channel
        ResourceCamera = 2,                ///< the library registers none
        ResourceProcess = 3,               ///< process
        ResourceLogicalPort = 4,           ///< camera port of an applet
        ResourceBoardCommon = 5,           ///< board: what concerns all of it
        ResourceBoardEvents = 6,           ///< board: its events
        ResourceNoDmaDllProcess = 7,       ///< process of a DLL applet that has no DMA channel
        ResourceNoDmaHapApplet = 8,        ///< board: the parameters of its HAP applet
        ResourceBoardDmaGroup = 9,         ///< board: all its channels
        ResourceBoardPortGroup = 10,       ///< board: all its ports
        ResourceNoDmaDllProcessGroup = 11, ///< board: all of ResourceNoDmaDllProcess
        ResourceNoDmaHapAppletGroup = 12,  ///< board: its ResourceNoDmaHapApplet
    };

    /// A new environment with an empty model; never null. gui::Gui creates one and returns it by
    /// Gui::environment(). Needs no application.
    [[nodiscard]] static boost::shared_ptr<Environment> create();
    /// Stops the monitor.
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /// Keeps the value of the key "connector" alive, which another host may give a meaning; the reference
    /// host does not use it. Ignores other keys.
    void injectDependency(const std::string& key, const boost::any& value);

    /// Boards, applet files and cameras. Never null, and the same object each time.
    boost::shared_ptr<models::HlEnvironmentModel> model();
    /// What the loaded applets consist of, by keys. Never null, and the same object each time.
    boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> globalResourceModel();

    /// On: a search scans each file that it adds or finds changed (HlEnvironmentFileNode::scan) before others
    /// see it. Off, as initially: new files have no type until something scans them, and changed files wait
    /// for a search with the scan on.
    void enableAutoScan(bool enable);

    /// Searches once for boards, cameras and applet files, and updates the model. Blocks while the runtime
    /// looks at the hardware and reads new files. A board with an applet stays in the model even if it is
    /// gone; so does every board while a load initialises one.
    /// \throws std::runtime_error  if there is no runtime, or it refuses to start (as the virtual
    ///     installation does with an invalid description of the machine); the model does not change
    void discoverResourcesOnce();

    /// Repeats discoverResourcesOnce until two searches find the same, ten times at most. Throws like it.
    void discoverResources();

    /// Starts a thread that updates the model: it looks for applet files four times a second, and for boards
    /// and cameras when the runtime reports that one was plugged or unplugged. Errors are logged. No effect
    /// if the monitor runs.
    void startMonitor();
    /// Waits until a running search has ended, and ends the thread. No effect if the monitor does not run. A
    /// slot of EnvironmentObserver must not call it.
    void stopMonitor();

    /// Adds the file at \p path to the file collection, whatever its folder, and scans it; if the collection
    /// has it already, scans it again. No effect if there is no such file. An error in the file becomes its
    /// node's broken reason. \p path is UTF-8, with "/" between folders; it becomes the node's key.
    void forceSingleFileAddition(const std::string& path);

private:
    friend class reference::EnvironmentObserver;

    Environment();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core
