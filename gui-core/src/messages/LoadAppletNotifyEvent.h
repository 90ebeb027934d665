// SPDX-License-Identifier: MIT
/// \file
/// LoadAppletNotifyEvent: a message about an applet load on its way from the worker phase to the front end.
#pragma once

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace ovra::gui::commands {

class LoadAppletNotifyEvent : public core::Command
{
public:
    enum Level : std::uint32_t
    {
        Information = 0,
        Warning = 1,
        Error = 2,
    };

    static boost::shared_ptr<LoadAppletNotifyEvent> create(std::uint32_t level, const std::string& message);
    /// A level that is none of the above shows nothing.
    LoadAppletNotifyEvent(std::uint32_t level, const std::string& message);

    void executeSync() override;

private:
    std::uint32_t m_level;
    std::string m_message;
};

} // namespace ovra::gui::commands
