/// \file
/// Hands commands to the application's command processor.
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core {
class Command;
}

namespace ovra::gui::commands {

/// Any thread. Does not wait, except on the GUI thread for commands that the processor runs at once.
void submit(const boost::shared_ptr<core::Command>& command);

/// Shows a splash message, from any thread.
void postSplashMessage(const std::string& message);

// Tell the user about the applet load under way, from its worker phase.
void postLoadStatus(const std::string& message);
void postLoadWarning(const std::string& message);
void postLoadError(const std::string& message);

} // namespace ovra::gui::commands
