// SPDX-License-Identifier: MIT
/// \file
/// PluginManager: the application's plug-ins.
#pragma once

#include "ovra-core/Export.h"

namespace ovra::core {

/// The application creates it; HarloApplication::pluginmanager() returns it. Any thread. The library starts
/// the monitor when the application starts, and stops it at the end.
class OVRA_CORE_API PluginManager
{
public:
    virtual ~PluginManager();

    /// Starts to watch the plug-in folder for additions.
    virtual void startMonitor() = 0;
    virtual void stopMonitor() = 0;
};

} // namespace ovra::core
