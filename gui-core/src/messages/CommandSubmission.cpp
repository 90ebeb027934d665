// SPDX-License-Identifier: MIT
#include "messages/CommandSubmission.h"

#include "messages/LoadAppletNotifyEvent.h"
#include "messages/ShowSplashscreenMessageEvent.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"

namespace ovra::gui::messages {

void submit(const boost::shared_ptr<core::Command>& command)
{
    core::HarloApplication::commandprocessor()->executeCommand(command);
}

void postSplashMessage(const std::string& message)
{
    submit(commands::ShowSplashscreenMessageEvent::create(message));
}

void postLoadStatus(const std::string& message)
{
    submit(commands::LoadAppletNotifyEvent::create(commands::LoadAppletNotifyEvent::Information, message));
}

void postLoadWarning(const std::string& message)
{
    submit(commands::LoadAppletNotifyEvent::create(commands::LoadAppletNotifyEvent::Warning, message));
}

void postLoadError(const std::string& message)
{
    submit(commands::LoadAppletNotifyEvent::create(commands::LoadAppletNotifyEvent::Error, message));
}

} // namespace ovra::gui::messages
