/// \file
/// PluginManager: the application's plug-ins.
#pragma once

#include "ovra-core/Export.h"

namespace ovra::core {

/// Made by the application; reached through HarloApplication::pluginmanager().
class OVRA_CORE_API PluginManager
{
public:
    virtual ~PluginManager();

    /// Starts to watch the plug-in folder for additions. Safe from any thread.
    virtual void startMonitor() = 0;
    virtual void stopMonitor() = 0;
};

} // namespace ovra::core
