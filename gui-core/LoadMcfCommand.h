/// \file
/// LoadMcfCommand: loads onto a board the applet that an MCF file names, with the values stored there.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// An MCF file is read for the name of its applet only. The name becomes a path below the runtime directory
/// unless it is one already, the environment is made to know the file, and a LoadAppletCommand does the rest;
/// this command does not wait for it. A file whose name ends with ".hap" is taken as the applet itself.
///
/// A file that names no applet, or one that does not exist, goes to Views::showErrorMessage and changes
/// nothing. Without a board nothing happens. All in the synchronous phase. Copies share one request.
class OVRA_GUI_CORE_API LoadMcfCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<LoadMcfCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board, const std::string& file);

    LoadMcfCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board,
                   const std::string& file);
    LoadMcfCommand(const LoadMcfCommand& other);
    LoadMcfCommand& operator=(const LoadMcfCommand& other);
    ~LoadMcfCommand() override;

    void executeSync() override;

private:
    void executeErrorDialog(const std::string& text);
    /// For a status of the runtime. Nothing here fails with one yet.
    void executeErrorDialog(int code);

    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
