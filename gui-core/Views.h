// SPDX-License-Identifier: MIT
/// \file
/// Views: the interface that a front end implements.
///
/// The library draws nothing. It calls Views to report what happens and to ask the user. A front end derives
/// from Views, implements the abstract operations, and injects an instance into the Gui under the key
/// "views". An exception from an operation propagates through the calling command to the host's error handler
/// (logMsgCallback must not throw). The command's remaining steps are then skipped, and its last phase runs.
///
/// The operations in the order of calls:
///
///   - start: onInitializeBegin, onLoggingInstalled, onInitializeSync, showSplashscreenMessage for each step,
///     fillCaches, onInitializationDone
///   - load: onLoadAppletStarted, showLoadingBoard, showLoadingApplet, applet_unloaded and update_dma_memory
///     (from the unload of the board), showLoadAppletStatus for each step, connectFglibEvents,
///     onLoadAppletFinished, ensure_board_selection, update_dma_memory; then setRescanInProgress
///   - acquisition: showChoiceDialog if image sizes differ, update_acquisition_state
///   - unload: applet_unloaded, update_dma_memory
///   - end: onCleanup
///
/// When an acquisition ends by itself, the library calls nothing: poll the display scene.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Plugin.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>

#include <string>

struct tOvraLogTag;

namespace ovra::core::models {
class FgLibEventsModel;
}

namespace ovra::gui {

/// The library calls every operation on the GUI thread, where it may show dialogs, with two exceptions:
/// logMsgCallback comes on the thread that logs, connectFglibEvents on the worker that loads an applet. It
/// does not call the operations inherited from Plugin.
///
/// The order of the operations is part of the binary interface, because front ends are built separately. New
/// ones go to the end; none is removed or renamed. Two styles of names are mixed because front ends already
/// implement the operations under these names.
class OVRA_GUI_CORE_API Views : public ovra::core::Plugin
{
public:
    Views();
    Views(const Views& other);
    Views& operator=(const Views& other);
    ~Views() override;

    /// The application starts. The first call, before log messages are forwarded: open a splash window, for
    /// example.
    virtual void onInitializeBegin() = 0;
    /// The application ends. Log messages are no longer forwarded. Loaded boards are still loaded, but
    /// commands that are submitted from now on do not all run: unload boards before the end. Close windows.
    virtual void onCleanup() = 0;
    /// From now on logMsgCallback receives the host's messages.
    virtual void onLoggingInstalled() = 0;
    /// Last call before the first splash message, for what a front end does once logging works.
    virtual void onInitializeSync() = 0;
    /// The application is ready for the user. Comes even if the search for boards failed; the error handler
    /// then got an exception before.
    virtual void onInitializationDone() = 0;
    /// A line of progress while the application starts.
    virtual void showSplashscreenMessage(const std::string& message) = 0;

    /// An applet load begins. One onLoadAppletFinished follows in any case. Until then submit no
    /// UnloadAppletCommand: it would not wait for the load.
    virtual void onLoadAppletStarted() = 0;
    /// The load has ended, successfully or not. A LoadAppletCommand submitted here is queued and runs next;
    /// an UnloadAppletCommand runs at once, which is safe from now on.
    virtual void onLoadAppletFinished() = 0;
    /// Lines about the running load: errors, warnings, progress.
    virtual void showLoadAppletError(const std::string& message) = 0;
    virtual void showLoadAppletWarning(const std::string& message) = 0;
    virtual void showLoadAppletStatus(const std::string& message) = 0;
    /// The board that is being loaded, as "index - name". Not called for an unknown serial number.
    virtual void showLoadingBoard(const std::string& caption) = 0;
    /// Name of the applet file that is being loaded, without its folder. Not called for an unknown file.
    virtual void showLoadingApplet(const std::string& fileName) = 0;

    /// A message of the host's log (ovra_log/OvraLog.h declares tOvraLogTag). Any thread, possibly several at
    /// once; pointers are valid during the call. Must not throw. The default implementation does nothing.
    ///
    /// \param level     0 error, 1 warning, 2 information, 3 debug
    /// \param threadId  numeric id of the thread that logs
    /// \param file      name of the source file, without its folder
    /// \param line      line in that file
    /// \param text      the message, UTF-8
    /// \param tagCount  number of \p tags
    /// \param tags      tags of the message; null if there are none
    /// \param userData  null
    virtual void logMsgCallback(unsigned long level, unsigned long threadId, const char* file,
                                unsigned int line, const char* text, unsigned int tagCount,
                                const tOvraLogTag* tags, void* userData);

    /// A load has created the events model of its board: subscribe. The load is still running and may fail;
    /// its parameters and display scenes do not exist yet. Which board it is, reference::BoardEvents says
    /// with each event. Called on the worker thread; must not wait for the GUI thread. An exception ends the
    /// load, and empties the board.
    ///
    /// \param events  never null; do not keep it
    /// \return the connection, which the board keeps and releases on the GUI thread when the applet is
    ///     unloaded; null for none
    virtual boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<ovra::core::models::FgLibEventsModel> events) = 0;

    /// The application has found boards and applets, before onInitializationDone: time for a front end to
    /// prepare what takes long, such as icons of the applets. The start waits for it. The default
    /// implementation does nothing.
    virtual void fillCaches();

    // The library does not call these five; the defaults do nothing. They keep their place in the interface,
    // and a front end may give them a meaning of its own.
    virtual void showBoardLinkConfigurationInHardwareDialog(unsigned int board);
    virtual void showBoardInHardwareDialog(unsigned int board);
    virtual void showBoardInCameraDialog(unsigned int board);
    virtual void showBoardInAppletsDialog(unsigned int board);
    virtual void raiseCameraDialog();
    /// The default implementation returns false.
    virtual bool isInitialized() const;

    /// Reserved vtable slots. Never called; implement them with an empty body.
    virtual void reservedSlot1() = 0;
    virtual void reservedSlot2() = 0;

    /// A start, a stop or a change of buffers has ended, successfully or not: show the state of each channel
    /// anew (DisplayScene::isGrabbing).
    virtual void update_acquisition_state() = 0;
    /// A board's applet was unloaded. Each load unloads first, and calls this for an empty board as well. It
    /// does not say which board: see in the model which nodes are gone. Visualizers of their scenes are no
    /// longer called.
    virtual void applet_unloaded() = 0;
    /// A load has ended, successfully or not, right after onLoadAppletFinished. If no board is selected,
    /// select one. This is also the place to set visualizers, as the new scenes exist. The default
    /// implementation does nothing.
    ///
    /// \param board  the serial number that the load was given, which may be unknown
    virtual void ensure_board_selection(unsigned int board);
    /// An error, with a title for the window that shows it. Loading and storing configuration files report
    /// errors in this way.
    virtual void showErrorMessage(const std::string& title, const std::string& message) = 0;
    /// A command may have changed Gui::getUsedDmaMemory. A changed parameter or limit is not reported: read
    /// the figures anew after setting one. The default implementation does nothing.
    virtual void update_dma_memory();
    /// The library does not call it; as above.
    virtual void update_selected_views();
    /// A search for boards and applet files has begun (true) or ended (false).
    virtual void setRescanInProgress(bool inProgress) = 0;

    /// Reserved vtable slot, as above.
    virtual void reservedSlot3() = 0;

    /// Asks the user a modal question, and returns when it is answered. The library asks only before a start,
    /// if image sizes of camera and channel differ: button 0 applies the camera's size to the channel, 1 the
    /// channel's to the camera, 2 leaves both. The acquisition starts with any answer; an exception prevents
    /// it.
    ///
    /// \param title    title of the window
    /// \param message  the question
    /// \param button0  text of button 0
    /// \param button1  text of button 1
    /// \param button2  text of button 2
    /// \param remember  never null, valid during the call, false on entry; set it to true if the user does
    ///     not want to be asked again
    /// \return 0, 1 or 2 for the chosen button; any other number counts as 2
    virtual int showChoiceDialog(const std::string& title, const std::string& message,
                                 const std::string& button0, const std::string& button1,
                                 const std::string& button2, bool* remember) = 0;

private:
    // Unused. Kept because it is part of the object's layout, which front ends are compiled with.
    boost::shared_ptr<bool> m_flag;
};

} // namespace ovra::gui
