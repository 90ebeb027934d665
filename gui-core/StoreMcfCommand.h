/// \file
/// StoreMcfCommand: writes the configuration of a board's applet to an MCF file.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Has the runtime write the file, in the synchronous phase. Success is silent; a failure, also that of a
/// board without an applet, goes to Views::showErrorMessage, and the file is as the runtime left it. Without
/// a board nothing happens. Copies share one request.
class OVRA_GUI_CORE_API StoreMcfCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<StoreMcfCommand>
    create(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board, const std::string& file);

    StoreMcfCommand(boost::shared_ptr<ovra::core::models::HlEnvironmentBoardNode> board,
                    const std::string& file);
    StoreMcfCommand(const StoreMcfCommand& other);
    StoreMcfCommand& operator=(const StoreMcfCommand& other);
    ~StoreMcfCommand() override;

    void executeSync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
