/// \file
/// LoadMcfCommand: loads onto a board the applet that an MCF file names, with the values stored there.
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

/// Reads an MCF file for the name of its applet, and submits a LoadAppletCommand with both: that one loads
/// the applet and applies the file. This command does not wait for it. All in executeSync, on the GUI thread;
/// reading takes milliseconds for a usual file.
///
/// How the applet is found:
///
///   - a path in the file is taken as it is; a bare name means the folder of the board's model below
///     "Hardware Applets" for a ".hap", below "dll" for everything else
///   - the environment is made to know the file, if it does not yet
///   - a \p file that itself ends with ".hap", in lower case, is the applet: nothing is applied afterwards
///
/// Errors go to Views::showErrorMessage with the title "Board <index> - Loading File", and the board keeps
/// what it holds:
///
///   - "ERROR: Illegal MCF Configuration File": missing, unreadable, or naming no applet
///   - "ERROR: Applet File Referenced In MCF Configuration File Does Not Exist!": the applet's file is
///     missing
///
/// What goes wrong later, LoadAppletCommand tells. While another load runs, nothing at all happens after the
/// file was read.
///
/// Before: "views" is injected.
class OVRA_GUI_CORE_API LoadMcfCommand : public ovra::core::Command
{
public:
    /// \param board  the board to load onto; null: the command does nothing. It keeps the node alive.
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
    /// For a status of the runtime. Nothing here fails with one yet.
    void executeErrorDialog(int code);

    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
