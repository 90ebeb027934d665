/// \file
/// Views: what a front end implements.
///
/// The library draws nothing. It tells a Views what happens and asks it what the user wants. A front end
/// derives from Views, implements the abstract operations, and hands an instance to the plug-in under the key
/// "views". What an operation throws passes through the command that called it to the host's error handler,
/// as if the host had thrown it.
///
/// In the order of a life:
///
///   - start: onInitializeBegin, onLoggingInstalled, onInitializeSync, showSplashscreenMessage for each step,
///     fillCaches, onInitializationDone
///   - load: onLoadAppletStarted, showLoadingBoard, showLoadingApplet, applet_unloaded and update_dma_memory
///     of the board that is emptied, showLoadAppletStatus for each step, connectFglibEvents,
///     onLoadAppletFinished, ensure_board_selection, update_dma_memory; then setRescanInProgress
///   - acquisition: showChoiceDialog where image sizes differ, update_acquisition_state
///   - unload: applet_unloaded, update_dma_memory
///   - end: onCleanup
///
/// An acquisition that ends by itself calls none: ask the display scene.
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

/// Every operation is called on the GUI thread and may show dialogs, with two exceptions: logMsgCallback
/// comes on whatever thread logs, and connectFglibEvents on the worker that loads an applet.
///
/// The order of the operations is part of the binary interface: front ends are built apart from the library.
/// New ones go to the end, none is taken away.
/// Nor is any renamed: operations with underscores keep the names under which front ends already implement
/// them.
class OVRA_GUI_CORE_API Views : public ovra::core::Plugin
{
public:
    Views();
    Views(const Views& other);
    Views& operator=(const Views& other);
    ~Views() override;

    /// The application starts: first call of all, before log messages are forwarded.
    virtual void onInitializeBegin() = 0;
    /// The application ends; log messages are not forwarded any more.
    virtual void onCleanup() = 0;
    /// Log messages arrive from now on.
    virtual void onLoggingInstalled() = 0;
    /// Last call before the first splash message.
    virtual void onInitializeSync() = 0;
    /// The application is ready for the user.
    virtual void onInitializationDone() = 0;
    /// A line of progress while the application starts.
    virtual void showSplashscreenMessage(const std::string& message) = 0;

    /// An applet load begins; for each there is one onLoadAppletFinished, whatever happens between. Until
    /// then submit no UnloadAppletCommand: it would not wait for the load.
    virtual void onLoadAppletStarted() = 0;
    virtual void onLoadAppletFinished() = 0;
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
    /// \param tags      what the message is about; null where there are none
    /// \param userData  null
    virtual void logMsgCallback(unsigned long level, unsigned long threadId, const char* file,
                                unsigned int line, const char* text, unsigned int tagCount,
                                const tOvraLogTag* tags, void* userData);

    /// A board has got an applet: subscribe to its events. The board keeps the returned connection and ends
    /// it when the applet is unloaded. Called on the worker thread; must not wait for the GUI thread.
    virtual boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<ovra::core::models::FgLibEventsModel> events) = 0;

    /// The application has found all resources: prepare what is slow to prepare.
    virtual void fillCaches();

    // For the front end's own use; the library does not call these.
    virtual void showBoardLinkConfigurationInHardwareDialog(unsigned int board);
    virtual void showBoardInHardwareDialog(unsigned int board);
    virtual void showBoardInCameraDialog(unsigned int board);
    virtual void showBoardInAppletsDialog(unsigned int board);
    virtual void raiseCameraDialog();
    /// False here.
    virtual bool isInitialized() const;

    /// Reserved: keep their place in the interface, are not called, and do nothing in a front end.
    virtual void reservedSlot1() = 0;
    virtual void reservedSlot2() = 0;

    /// Acquisition was started, stopped, or got other buffers.
    virtual void update_acquisition_state() = 0;
    /// An applet was taken off its board.
    virtual void applet_unloaded() = 0;
    /// A load has ended, well or not: select a board if none is selected. \p board is the serial that was
    /// asked for, which may be that of no board.
    virtual void ensure_board_selection(unsigned int board);
    /// An error, with the title of the window that tells it.
    virtual void showErrorMessage(const std::string& title, const std::string& message) = 0;
    /// Gui::getUsedDmaMemory or Gui::getTotalDmaMemory may have changed.
    virtual void update_dma_memory();
    /// For the front end's own use.
    virtual void update_selected_views();
    /// A search for boards and applet files has begun (true) or ended (false).
    virtual void setRescanInProgress(bool inProgress) = 0;

    /// Reserved, as above.
    virtual void reservedSlot3() = 0;

    /// A modal question. Returns the index 0, 1 or 2 of the button that was pressed; any other number changes
    /// nothing.
    ///
    /// \param title    of the window
    /// \param message  the question
    /// \param button0  what 0 stands for
    /// \param button1  what 1 stands for
    /// \param button2  what 2 stands for
    /// \param remember  false on entry; set to true when the user wants the answer to hold from now on
    virtual int showChoiceDialog(const std::string& title, const std::string& message,
                                 const std::string& button0, const std::string& button1,
                                 const std::string& button2, bool* remember) = 0;

private:
    // Unused: part of the object's layout, which front ends are compiled against.
    boost::shared_ptr<bool> m_flag;
};

} // namespace ovra::gui
