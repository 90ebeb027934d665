// SPDX-License-Identifier: MIT
/// \file
/// LoadMcfCommand: loads the applet that an MCF file names onto a board, with the parameter values in the
/// file.
///
/// \code
/// core::HarloApplication::commandprocessor()->executeCommand(
///     gui::commands::LoadMcfCommand::create(board, "/home/user/ramp.mcf"));
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

/// Reads the name of the applet from an MCF file and submits a LoadAppletCommand with both, which loads the
/// applet and applies the file. Does not wait for it. All work is in executeSync, on the GUI thread; reading
/// a usual file takes milliseconds.
///
/// How the command finds the applet:
///
///   - a path in the file is used unchanged; a bare name is resolved in the folder of the board's model,
///     below "Hardware Applets" for a ".hap", below "dll" for everything else
///   - the file is added to the environment if missing
///   - if \p file itself ends with ".hap" (lower case), it is the applet, and no MCF is applied
///
/// Errors go to Views::showErrorMessage with the title "Board <index> - Loading File", and the board does not
/// change:
///
///   - "ERROR: Illegal MCF Configuration File": missing, unreadable, or naming no applet
///   - "ERROR: Applet File Referenced In MCF Configuration File Does Not Exist!": the applet's file is
///     missing
///
/// LoadAppletCommand reports later errors. While another load is running, this command has no effect beyond
/// adding the file to the environment.
///
/// Preconditions: "views" is injected.
class OVRA_GUI_CORE_API LoadMcfCommand : public ovra::core::Command
{
public:
    /// \param board  the board to load onto, which the command keeps alive; null: the command does nothing
    /// \param file  path of the MCF or ".hap" file; UTF-8 on Linux, in the process's code page on Windows
    [[nodiscard]] static boost::shared_ptr<LoadMcfCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board, const std::string& file);

    LoadMcfCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board,
                   const std::string& file);
    /// Copies share one request: submitting a copy is submitting the same command.
    LoadMcfCommand(const LoadMcfCommand& other);
    LoadMcfCommand& operator=(const LoadMcfCommand& other);
    ~LoadMcfCommand() override;

    // For the command processor.
    void executeSync() override;

private:
    void executeErrorDialog(const std::string& text);
    /// Reports a runtime status. Unused: kept because it is part of the class's fixed interface.
    void executeErrorDialog(int code);

    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
