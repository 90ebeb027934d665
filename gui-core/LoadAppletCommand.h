// SPDX-License-Identifier: MIT
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

/// Unloads the board, initialises it with the applet, and adds processes, DMA channels, camera ports,
/// parameters, image buffers and display scenes to the environment's model (and to its list of global
/// resources). If an MCF file is given, the runtime then applies it. At the end submits a
/// RescanAppletsCommand.
///
///   - executeSync, GUI thread: onLoadAppletStarted, showLoadingBoard, showLoadingApplet; the callbacks of
///     UnloadAppletCommand
///   - executeAsync, worker: showLoadAppletStatus, ...Warning and ...Error, each on the GUI thread;
///     connectFglibEvents, on the worker
///   - executePostAsync, GUI thread: onLoadAppletFinished, ensure_board_selection, update_dma_memory, in any
///     case
///
/// Only one load runs per process. A load submitted while another is running is ignored: no message, no
/// callback.
///
/// Errors go to Views::showLoadAppletError, exceptions from the host to the error handler. A load without
/// either has succeeded. After any error, look at the board:
///
///   - unknown board or file: the model does not change; the callbacks of the first and the last phase come
///   - unload failed: the load continues. If the unload did not free the board's handle, the runtime refuses
///     the board, and it stays as the unload left it
///   - any later error, and any exception from the host on the worker: the board is empty
///   - MCF refused: Views::showLoadAppletWarning; the applet stays loaded
///
/// Create a new command for each load, and submit it once. The reference host refuses an object that is still
/// running with std::logic_error. It cannot recognise a copy: if a copy is submitted before
/// Views::onLoadAppletFinished, the mark that a load is running stays, and the process ignores every later
/// load.
///
/// Preconditions: "views" is injected, and the environment knows the file
/// (Environment::forceSingleFileAddition adds one from another folder).
class OVRA_GUI_CORE_API LoadAppletCommand : public ovra::core::Command
{
public:
    /// \param boardSerial  serial number of the board, not its index. The model has it as unsigned int; cast
    ///     it: each value, also one above INT_MAX, reaches its board.
    /// \param appletFile  path, UTF-8, as HlEnvironmentFileNode::getFilePath gives it
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
