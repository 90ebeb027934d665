// SPDX-License-Identifier: MIT
#include "ovra-core/Command.h"

namespace ovra::core {

Command::Command(CommandType type) : m_type(type) {}
Command::Command(const Command&) = default;
Command& Command::operator=(const Command&) = default;
Command::~Command() = default;

void Command::executeSync() {}
void Command::unexecuteSync() {}
void Command::executeAsync() {}
void Command::executePostAsync() {}

Command::CommandType Command::type() const
{
    return m_type;
}

} // namespace ovra::core
