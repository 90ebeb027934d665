// SPDX-License-Identifier: MIT
/// \file
/// Views: the interface that a front end implements.
///
/// The library draws nothing. It calls Views to report what happens and to ask the user. A front end derives
/// from Views, implements the abstract operations, and injects an instance into the Gui under the key
/// "views". Exceptions from an operation propagate through the calling command to the host's error handler,
/// like those from the host.
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

    /// The application starts. The first call, before log messages are forwarded.
    virtual void onInitializeBegin() = 0;
    /// The application ends. Log messages are no longer forwarded.
    virtual void onCleanup() = 0;
    /// From now on log messages are forwarded.
    virtual void onLoggingInstalled() = 0;
    /// Last call before the first splash message.
    virtual void onInitializeSync() = 0;
    /// The application is ready for the user.
    virtual void onInitializationDone() = 0;
    /// A line of progress while the application starts.
    virtual void showSplashscreenMessage(const std::string& message) = 0;

    /// An applet load begins. One onLoadAppletFinished follows in any case. Until then submit no
    /// UnloadAppletCommand: it would not wait for the load.
    virtual void onLoadAppletStarted() = 0;
    virtual void onLoadAppletFinished() = 0;
    /// Lines about the running load: errors, warnings, progress.
    virtual void showLoadAppletError(const std::string& message) = 0;
    virtual void showLoadAppletWarning(const std::string& message) = 0;
    virtual void showLoadAppletStatus(const std::string& message) = 0;
    /// The board that is being loaded, as "index - name".
    virtual void showLoadingBoard(const std::string& caption) = 0;
    /// Name of the applet file that is being loaded.
    virtual void showLoadingApplet(const std::string& fileName) = 0;

    /// A message of the host's log. Any thread, possibly several at once; pointers are valid during the call.
    ///
    /// \param level     0 error, 1 warning, 2 information, 3 debug
    /// \param threadId  numeric id of the thread that logs
    /// \param file      source file
    /// \param line      line in that file
    /// \param text      the message
    /// \param tagCount  number of \p tags
    /// \param tags      tags of the message; null if there are none
    /// \param userData  null
    virtual void logMsgCallback(unsigned long level, unsigned long threadId, const char* file,
                                unsigned int line, const char* text, unsigned int tagCount,
                                const tOvraLogTag* tags, void* userData);

    /// An applet has been loaded: subscribe to the board's events. The board keeps the returned connection
    /// and disconnects it when the applet is unloaded. Called on the worker thread; must not wait for the GUI
    /// thread.
    virtual boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<ovra::core::models::FgLibEventsModel> events) = 0;

    /// The application has found all resources: prepare caches that take time to fill.
    virtual void fillCaches();

    // For the front end's own use: the library does not call these. They keep their place in the interface.
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

    /// An acquisition was started or stopped, or the number of its buffers has changed.
    virtual void update_acquisition_state() = 0;
    /// A board's applet was unloaded. Each load unloads first, and calls this for an empty board as well.
    virtual void applet_unloaded() = 0;
    /// A load has ended (successfully or not): if no board is selected, select one. \p board is the requested
    /// serial number, which may be unknown.
    virtual void ensure_board_selection(unsigned int board);
    /// An error, with a title for the window that shows it.
    virtual void showErrorMessage(const std::string& title, const std::string& message) = 0;
    /// Gui::getUsedDmaMemory or Gui::getTotalDmaMemory may have changed.
    virtual void update_dma_memory();
    /// For the front end's own use.
    virtual void update_selected_views();
    /// A search for boards and applet files has begun (true) or ended (false).
    virtual void setRescanInProgress(bool inProgress) = 0;

    /// Reserved vtable slot, as above.
    virtual void reservedSlot3() = 0;

    /// Asks the user a modal question.
    ///
    /// \param title    title of the window
    /// \param message  the question
    /// \param button0  text of button 0
    /// \param button1  text of button 1
    /// \param button2  text of button 2
    /// \param remember  false on entry; set it to true if the user does not want to be asked again
    /// \return 0, 1 or 2 for the chosen button; with any other number nothing changes
    virtual int showChoiceDialog(const std::string& title, const std::string& message,
                                 const std::string& button0, const std::string& button1,
                                 const std::string& button2, bool* remember) = 0;

private:
    // Unused. Kept because it is part of the object's layout, which front ends are compiled with.
    boost::shared_ptr<bool> m_flag;
};

} // namespace ovra::gui
