/// \file
/// HarloApplication: the running application, as plug-ins see it.
#pragma once

#include "ovra-core/Export.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core {

class CommandProcessor;
class PluginManager;

/// One application runs in a process. Without one, the pointers are empty, entries have their defaults and
/// the runtime directory is empty. Safe from any thread.
class OVRA_CORE_API HarloApplication
{
public:
    static boost::shared_ptr<CommandProcessor> commandprocessor();
    static boost::shared_ptr<PluginManager> pluginmanager();

    /// The integer under \p key, or \p defaultValue when there is none or it is no integer.
    static long long getConfigIntEntry(const std::string& key, long long defaultValue);

    /// Stores an integer; it outlives the process where the application keeps its entries in a file.
    static void setConfigEntry(const std::string& key, int value);

    /// Root of the folders "bin", "Hardware Applets" and "dll", without a closing separator.
    static std::string getRuntimeDirectory();
};

} // namespace ovra::core
