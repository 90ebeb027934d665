// SPDX-License-Identifier: MIT
/// \file
/// PluginManager: the application's plug-ins.
#pragma once

#include "ovra-core/Export.h"

namespace ovra::core {

/// The application creates it; HarloApplication::pluginmanager() returns it. Any thread. The library starts
/// the monitor when the application starts, and stops it at the end; a front end calls neither. The reference
/// host loads no plug-ins from files: it only remembers whether the monitor is on.
class OVRA_CORE_API PluginManager
{
public:
    virtual ~PluginManager();

    /// Starts to watch the plug-in folder for additions.
    virtual void startMonitor() = 0;
    /// Ends that. Without effect if the monitor is off.
    virtual void stopMonitor() = 0;
};

} // namespace ovra::core
