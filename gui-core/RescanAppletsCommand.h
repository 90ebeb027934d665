/// \file
/// RescanAppletsCommand: looks for boards and applet files again.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// One discovery pass on the worker, between Views::setRescanInProgress(true) and (false).
class OVRA_GUI_CORE_API RescanAppletsCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<RescanAppletsCommand> create();

    RescanAppletsCommand();
    RescanAppletsCommand(const RescanAppletsCommand& other);
    RescanAppletsCommand& operator=(const RescanAppletsCommand& other);
    ~RescanAppletsCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;
};

} // namespace ovra::gui::commands
