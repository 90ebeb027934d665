// SPDX-License-Identifier: MIT
/// \file
/// Hands commands to the application's command processor.
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core {
class Command;
}

namespace ovra::gui::messages {

/// Any thread. Returns at once, except on the GUI thread for commands that the processor executes
/// immediately.
void submit(const boost::shared_ptr<core::Command>& command);

/// Shows a splash message. Any thread.
void postSplashMessage(const std::string& message);

// Lines about the running applet load, from its worker phase.
void postLoadStatus(const std::string& message);
void postLoadWarning(const std::string& message);
void postLoadError(const std::string& message);

} // namespace ovra::gui::messages
