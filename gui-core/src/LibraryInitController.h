// SPDX-License-Identifier: MIT
/// \file
/// LibraryInitController: counts the uses of the library, and shuts everything down with the last one.
#pragma once

#include "platform/GuardedSingleton.h"

#include <cstdint>
#include <exception>
#include <vector>

namespace ovra::gui {

/// One exists from the first OvraGuiCoreInit to the last OvraGuiCoreDeinit. Any thread. Every operation holds
/// one recursive spin lock, so a host library may call back on the same thread while it is started or
/// stopped.
class LibraryInitController
{
public:
    using Function = void (*)();

    /// Increments the use count, which it returns, and creates the controller on the first use. Counts even
    /// if creation throws std::bad_alloc.
    static std::uint32_t acquire();

    /// Remembers \p shutDown for the last release and calls \p startUp, both under the lock.
    static void registerLibrary(Function startUp, Function shutDown);

    /// While no controller exists the singleton is not registered and is never destroyed.
    static void registerSingleton(templates::patterns::GuardedSingletonBase& singleton);

    /// Decrements the use count. The last release calls every shut-down function and destroys every
    /// singleton, both in the order of registration, and then destroys the controller.
    ///
    /// If a shut-down function throws, the rest still run and the first exception is rethrown. A shut-down
    /// function may start and stop the library again; what it starts is shut down in the same pass. An
    /// unbalanced release wraps the counter and does nothing else.
    static void release();

    static std::uint32_t useCount();

private:
    /// Returns the first failure, if any.
    std::exception_ptr shutDown();

    std::vector<templates::patterns::GuardedSingletonBase*> m_singletons;
    std::vector<Function> m_shutDowns;
    bool m_isShuttingDown = false;
};

} // namespace ovra::gui
