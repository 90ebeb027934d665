/// \file
/// InitializeApplicationCommand: brings the application from a freshly loaded plug-in to readiness.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Starts logging, lets the front end set itself up, finds boards, applet files and cameras, scans every
/// applet file, and switches automatic scanning and the monitors on. Tells its progress through
/// Views::showSplashscreenMessage.
///
/// Run once, at the start, with "views" injected. A host exception ends the phase it comes from; if that
/// happens during discovery, automatic scanning and monitors stay off.
class OVRA_GUI_CORE_API InitializeApplicationCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<InitializeApplicationCommand> create();

    InitializeApplicationCommand();
    InitializeApplicationCommand(const InitializeApplicationCommand& other);
    InitializeApplicationCommand& operator=(const InitializeApplicationCommand& other);
    ~InitializeApplicationCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;
};

} // namespace ovra::gui::commands
