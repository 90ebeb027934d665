// SPDX-License-Identifier: MIT
#include "ovra-core/Plugin.h"

#include "ovra-core/Command.h"

namespace ovra::core {

Plugin::Plugin() = default;
Plugin::Plugin(const Plugin&) = default;
Plugin& Plugin::operator=(const Plugin&) = default;
Plugin::~Plugin() = default;

void Plugin::postConstruct() {}
void Plugin::injectDependency(const std::string&, const boost::any&) {}
void Plugin::postInjection() {}

boost::shared_ptr<Command> Plugin::createInitializationApplicationCommand()
{
    return {};
}

boost::shared_ptr<Command> Plugin::createCleanupApplicationCommand()
{
    return {};
}

} // namespace ovra::core
