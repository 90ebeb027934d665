// SPDX-License-Identifier: MIT
/// \file
/// Plugin: the base class of the application's plug-ins.
#pragma once

#include "ovra-core/Export.h"

#include <boost/any.hpp>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core {

class Command;

template <class T>
class EnableThisPtr : public boost::enable_shared_from_this<T> // NOLINT(bugprone-crtp-*)
{};

/// The application creates a plug-in, calls postConstruct, injects its dependencies by key, and calls
/// postInjection. It submits the initialisation command at its start and the clean-up command at its end. All
/// of that happens on the GUI thread. The default implementations do nothing and return an empty pointer.
///
/// \code
/// class Greeter : public core::Plugin
/// {
/// public:
///     void injectDependency(const std::string& key, const boost::any& value) override
///     {
///         if (key == "views")
///             m_views = boost::any_cast<boost::shared_ptr<gui::Views>>(value);
///     }
///     boost::shared_ptr<core::Command> createInitializationApplicationCommand() override
///     {
///         return boost::make_shared<GreetCommand>(m_views);
///     }
/// };
/// \endcode
class OVRA_CORE_API Plugin : public EnableThisPtr<Plugin>
{
public:
    Plugin();
    Plugin(const Plugin& other);
    Plugin& operator=(const Plugin& other);
    virtual ~Plugin();

    virtual void postConstruct();
    virtual void injectDependency(const std::string& key, const boost::any& value);
    virtual void postInjection();
    virtual boost::shared_ptr<Command> createInitializationApplicationCommand();
    virtual boost::shared_ptr<Command> createCleanupApplicationCommand();
};

} // namespace ovra::core
