// SPDX-License-Identifier: MIT
#include "messages/LoadAppletNotifyEvent.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

boost::shared_ptr<LoadAppletNotifyEvent> LoadAppletNotifyEvent::create(std::uint32_t level,
                                                                       const std::string& message)
{
    return boost::make_shared<LoadAppletNotifyEvent>(level, message);
}

LoadAppletNotifyEvent::LoadAppletNotifyEvent(std::uint32_t level, const std::string& message)
    : Command(Command::Event),
      m_level(level),
      m_message(message)
{}

void LoadAppletNotifyEvent::executeSync()
{
    switch (m_level) {
    case Information:
        Gui::views()->showLoadAppletStatus(m_message);
        break;
    case Warning:
        Gui::views()->showLoadAppletWarning(m_message);
        break;
    case Error:
        Gui::views()->showLoadAppletError(m_message);
        break;
    default:
        break;
    }
}

} // namespace ovra::gui::commands
