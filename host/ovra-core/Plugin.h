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

/// Gives a plug-in shared pointers to itself, with shared_from_this(). Its name is part of the interface.
template <class T>
class EnableThisPtr : public boost::enable_shared_from_this<T> // NOLINT(bugprone-crtp-*): as its base
{};

/// A part of the application, such as gui::Gui. The application (or the program, with
/// reference::Application::addPlugin) calls all functions on the GUI thread, in the order in which they stand
/// here. An exception from one propagates to the caller of addPlugin, startPlugins or stopPlugins. The
/// default implementations do nothing; the two that return a command return null.
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

    /// The plug-in has been added; it has no dependencies yet.
    virtual void postConstruct();
    /// Called once for each dependency. A plug-in ignores keys that it does not know. boost::any_cast throws
    /// boost::bad_any_cast if \p value has another type than the exact one.
    virtual void injectDependency(const std::string& key, const boost::any& value);
    /// All dependencies have been injected.
    virtual void postInjection();
    /// The command that the application submits at its start; null for none.
    virtual boost::shared_ptr<Command> createInitializationApplicationCommand();
    /// The command that the application submits at its end; null for none.
    virtual boost::shared_ptr<Command> createCleanupApplicationCommand();
};

} // namespace ovra::core
