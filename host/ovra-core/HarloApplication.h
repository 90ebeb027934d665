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

/// A process has at most one application. While there is none, the pointers and the runtime directory are
/// empty, reading an entry gives its default, and writing one has no effect. Any thread.
///
/// \code
/// const auto buffers = core::HarloApplication::getConfigIntEntry("gui.preferences.acq.default.buffers", 16);
/// core::HarloApplication::commandprocessor()->executeCommand(command);
/// \endcode
class OVRA_CORE_API HarloApplication
{
public:
    static boost::shared_ptr<CommandProcessor> commandprocessor();
    static boost::shared_ptr<PluginManager> pluginmanager();

    /// The integer under \p key, or \p defaultValue if there is none or it is not an integer.
    static long long getConfigIntEntry(const std::string& key, long long defaultValue);

    /// Stores an integer. It outlives the process if the application keeps its entries in a file.
    static void setConfigEntry(const std::string& key, int value);

    /// Parent of the folders "bin", "Hardware Applets" and "dll", without a trailing separator.
    static std::string getRuntimeDirectory();
};

} // namespace ovra::core
