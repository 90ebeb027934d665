// SPDX-License-Identifier: MIT
/// \file
/// StoreMcfCommand: writes the configuration of a board's applet to an MCF file.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::StoreMcfCommand::create(board, "/home/user/ramp.mcf"));
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// The runtime writes the applet's name and the values of its parameters, in executeSync, on the GUI thread.
/// Blocks until the file is written. LoadMcfCommand restores the stored state.
///
/// Success has no message. A failure, such as a board without an applet, goes to Views::showErrorMessage with
/// the title "Board <index> - Storing MCF Configuration File" and the message "ERROR: ", the
/// description and the code in parentheses. The runtime decides whether the file is then unchanged, missing,
/// or incomplete.
///
/// Preconditions: "views" is injected.
class OVRA_GUI_CORE_API StoreMcfCommand : public ovra::core::Command
{
public:
    /// \param board  the board whose configuration is stored; null: the command does nothing. The command
    ///     keeps the node alive.
    /// \param file  path of the file, which is replaced; its folder must exist. UTF-8 on Linux, in the
    ///     process's code page on Windows.
    [[nodiscard]] static boost::shared_ptr<StoreMcfCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board, const std::string& file);

    StoreMcfCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board,
                    const std::string& file);
    /// Copies share one request: submitting a copy is submitting the same command.
    StoreMcfCommand(const StoreMcfCommand& other);
    StoreMcfCommand& operator=(const StoreMcfCommand& other);
    ~StoreMcfCommand() override;

    // For the command processor.
    void executeSync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
