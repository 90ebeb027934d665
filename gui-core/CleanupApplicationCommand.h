/// \file
/// CleanupApplicationCommand: brings the application to rest.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Stops the monitors, releases the camera models, ends log forwarding, tells the front end, ends
/// asynchronous commands, and stops logging. Boards, applets and acquisitions are left alone. Run at the end,
/// before the plug-in is destroyed.
class OVRA_GUI_CORE_API CleanupApplicationCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<CleanupApplicationCommand> create();

    CleanupApplicationCommand();
    CleanupApplicationCommand(const CleanupApplicationCommand& other);
    CleanupApplicationCommand& operator=(const CleanupApplicationCommand& other);
    ~CleanupApplicationCommand() override;

    void executeSync() override;
};

} // namespace ovra::gui::commands
