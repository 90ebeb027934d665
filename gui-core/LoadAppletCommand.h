/// \file
/// LoadAppletCommand: loads an applet onto a board.
///
/// \code
/// const auto serial = static_cast<int>(board->getSerial());
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::LoadAppletCommand::create(serial, file->getFilePath(), ""));
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::gui::commands {

/// Empties the board, initialises it with the applet, and publishes processes, DMA channels, camera ports,
/// parameters, image buffers and display scenes in the environment's model and the global resources. Then, if
/// an MCF file is given, has the runtime apply it. Looks for applets again at the end (RescanAppletsCommand).
///
///   - executeSync, GUI thread: onLoadAppletStarted, showLoadingBoard, showLoadingApplet; what
///     UnloadAppletCommand tells
///   - executeAsync, worker: showLoadAppletStatus, ...Warning and ...Error, each on the GUI thread;
///     connectFglibEvents, on the worker
///   - executePostAsync, GUI thread: onLoadAppletFinished, ensure_board_selection, update_dma_memory, in any
///     case
///
/// One load runs at a time in a process. A command that is submitted while another one is under way is
/// ignored: no phase of it does anything, no operation of Views is called.
///
/// Errors go to Views::showLoadAppletError; exceptions of the host, to the error handler. The board is
/// afterwards
///
///   - as it was, for an unknown board or applet file
///   - as the unload left it, if already that failed
///   - empty, after any later error
///   - loaded, if only the MCF cannot be applied: Views::showLoadAppletWarning tells of it
///
/// Submit neither the object nor a copy again before Views::onLoadAppletFinished: the load that runs would
/// then not give its slot back, and every later load of the process would be ignored. Make a new command for
/// each load.
///
/// Before: "views" is injected, and the environment knows the file (Environment::forceSingleFileAddition adds
/// one that lies elsewhere).
class OVRA_GUI_CORE_API LoadAppletCommand : public ovra::core::Command
{
public:
    /// \param boardSerial  serial number of the board, not its index
    /// \param appletFile  path as HlEnvironmentFileNode::getFilePath gives it
    /// \param mcfFile  path of an MCF file to apply, or "" for none; UTF-8 on Linux, in the process's code
    ///     page on Windows
    [[nodiscard]] static boost::shared_ptr<LoadAppletCommand>
    create(int boardSerial, const std::string& appletFile, const std::string& mcfFile);

    LoadAppletCommand(int boardSerial, const std::string& appletFile, const std::string& mcfFile);
    /// Copies share one request.
    LoadAppletCommand(const LoadAppletCommand& other);
    LoadAppletCommand& operator=(const LoadAppletCommand& other);
    ~LoadAppletCommand() override;

    // For the command processor; the list above says what each does.
    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
