// SPDX-License-Identifier: MIT
/// \file
/// ShowSplashscreenMessageEvent: a line of progress on its way from a worker phase to the front end.
#pragma once

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::gui::commands {

struct ShowSplashscreenMessageEvent : core::Command
{
    static boost::shared_ptr<ShowSplashscreenMessageEvent> create(const std::string& message);
    explicit ShowSplashscreenMessageEvent(const std::string& text);

    void executeSync() override;

    std::string message;
};

} // namespace ovra::gui::commands
