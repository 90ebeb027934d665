// SPDX-License-Identifier: MIT
#include "messages/ShowSplashscreenMessageEvent.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

boost::shared_ptr<ShowSplashscreenMessageEvent>
ShowSplashscreenMessageEvent::create(const std::string& message)
{
    return boost::make_shared<ShowSplashscreenMessageEvent>(message);
}

ShowSplashscreenMessageEvent::ShowSplashscreenMessageEvent(const std::string& text)
    : Command(Command::Event),
      message(text)
{}

void ShowSplashscreenMessageEvent::executeSync()
{
    Gui::views()->showSplashscreenMessage(message);
}

} // namespace ovra::gui::commands
