/// \file
/// LibraryInitController: the use count of the library, and what its last use takes down.
#pragma once

#include "platform/GuardedSingleton.h"

#include <cstdint>
#include <exception>
#include <vector>

namespace ovra::gui {

/// One exists from the first OvraGuiCoreInit to the last OvraGuiCoreDeinit. Any thread; every operation holds
/// one recursive spin lock, so a host library that is being started or stopped may come back on the same
/// thread.
class LibraryInitController
{
public:
    using Function = void (*)();

    /// Counts one use up, and makes the controller with the first. Returns the count. When there is no memory
    /// for the controller the use counts nevertheless.
    static std::uint32_t acquire();

    /// Remembers \p shutDown for the last release and calls \p startUp, both under the lock.
    static void registerLibrary(Function startUp, Function shutDown);

    /// Without a controller the singleton is nobody's: it is never destroyed.
    static void registerSingleton(templates::patterns::GuardedSingletonBase& singleton);

    /// Counts one use down. With the last: calls every shut-down function, first registered first, destroys
    /// every singleton likewise, and goes. A shut-down function that throws keeps none of this from
    /// happening; the first one's exception is thrown at the end. One that starts the library again finds it
    /// started; where it takes that back, it is shut down with the rest. One release too many wraps the count
    /// around and changes nothing else.
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
