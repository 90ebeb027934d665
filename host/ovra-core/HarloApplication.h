// SPDX-License-Identifier: MIT
/// \file
/// HarloApplication: the running application, as plug-ins see it.
#pragma once

#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core {

class CommandProcessor;
class PluginManager;

/// A process has at most one application (reference::Application makes one). While there is none, the
/// pointers and the runtime directory are empty, reading an entry gives its default, and writing one has no
/// effect. Any thread.
///
/// \code
/// const auto buffers = core::HarloApplication::getConfigIntEntry("gui.preferences.acq.default.buffers", 16);
/// core::HarloApplication::commandprocessor()->executeCommand(command);
/// \endcode
class OVRA_CORE_API HarloApplication
{
public:
    /// Null without an application. A pointer that is held beyond the application's end stays valid; its
    /// processor drops commands.
    static boost::shared_ptr<CommandProcessor> commandprocessor();
    /// Null without an application.
    static boost::shared_ptr<PluginManager> pluginmanager();

    /// The integer under \p key, or \p defaultValue if there is none or it is not an integer. gui-core's
    /// keys/Keys.h declares the keys that the library uses, with defaults and units.
    static long long getConfigIntEntry(const std::string& key, long long defaultValue);

    /// Stores an integer. It outlives the process if the application keeps its entries in a file, which each
    /// change writes. If the file cannot be written, the reason is logged, and the entry is kept in memory.
    static void setConfigEntry(const std::string& key, int value);

    /// Parent of the folders "Hardware Applets", "dll" and "mcf", where applets and configurations are,
    /// without a trailing separator. UTF-8. On the reference host: ApplicationOptions::runtimeDirectory.
    static std::string getRuntimeDirectory();
};

} // namespace ovra::core
