// SPDX-License-Identifier: MIT
#include "LibraryInitController.h"

#include "platform/SpinLockVariableGuard.h"

#include <atomic>
#include <cstdio>
#include <utility>

namespace ovra::gui {

using templates::patterns::GuardedSingletonBase;
using templates::platform::SpinLockVariableGuard;

namespace {

// For development: prints the order of start-ups and shut-downs.
constexpr bool CONSOLE_TRACE = false;

// A spin lock although the start-ups under it may block: it must be recursive, because a host library may
// call back on the same thread, and other threads have nothing to do before the start-up is over.
std::atomic<std::int32_t> controllerLock{0};
std::atomic<std::uint32_t> controllerOwner{0};
std::uint32_t uses = 0;
// Only the last release destroys it, not the end of the process: an exit handler may still use it.
constinit LibraryInitController* controller = nullptr;

void trace([[maybe_unused]] const char* step)
{
    if constexpr (CONSOLE_TRACE)
        std::printf("LibraryInitController [%s] - Instance: %p\n", step, static_cast<void*>(controller));
}

void traceUse([[maybe_unused]] const char* step, [[maybe_unused]] std::uint32_t count)
{
    if constexpr (CONSOLE_TRACE)
        std::printf("LibraryInitController [%s] - Instance: %p - Use Count: %u\n", step,
                    static_cast<void*>(controller), count);
}

/// Sets a flag for the length of a scope.
class Raised
{
public:
    explicit Raised(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Raised() { m_flag = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& m_flag;
};

} // namespace

std::uint32_t LibraryInitController::acquire()
{
    const SpinLockVariableGuard guard(&controllerLock, &controllerOwner);
    // Counted even if creating the controller fails, so that every call needs one release.
    const std::uint32_t count = ++uses;
    // The controller may exist already: a host library may start this one again during a shut-down.
    if (count == 1 && !controller) {
        controller = new LibraryInitController;
        trace("Create ");
    }
    traceUse("Init   ", count);
    return count;
}

void LibraryInitController::registerLibrary(Function startUp, Function shutDown)
{
    const SpinLockVariableGuard guard(&controllerLock, &controllerOwner);
    if (controller)
        controller->m_shutDowns.push_back(shutDown);
    startUp();
}

void LibraryInitController::registerSingleton(GuardedSingletonBase& singleton)
{
    const SpinLockVariableGuard guard(&controllerLock, &controllerOwner);
    if (controller)
        controller->m_singletons.push_back(&singleton);
}

void LibraryInitController::release()
{
    const SpinLockVariableGuard guard(&controllerLock, &controllerOwner);
    traceUse("Deinit ", uses - 1);
    --uses;
    if (uses != 0 || !controller || controller->m_isShuttingDown)
        return;
    const std::exception_ptr failure = controller->shutDown();
    if (uses == 0) { // not started again in the meantime
        trace("Destroy");
        delete std::exchange(controller, nullptr);
    }
    if (failure)
        std::rethrow_exception(failure);
}

std::uint32_t LibraryInitController::useCount()
{
    const SpinLockVariableGuard guard(&controllerLock, &controllerOwner);
    return uses;
}

std::exception_ptr LibraryInitController::shutDown()
{
    const Raised shuttingDown(m_isShuttingDown);
    std::exception_ptr failure;
    // The lists are moved out first, because a shut-down may register again. The order is that of the
    // start-ups, not the reverse: the host's libraries expect it.
    do {
        for (const Function function : std::exchange(m_shutDowns, {})) {
            try {
                function();
            } catch (...) {
                if (!failure)
                    failure = std::current_exception();
            }
        }
    } while (uses == 0 && !m_shutDowns.empty()); // started and stopped again in the meantime

    for (GuardedSingletonBase* singleton : std::exchange(m_singletons, {})) {
        singleton->beforeDestruction();
        std::atomic<GuardedSingletonBase*>& pointer = singleton->instancePointer();
        delete singleton;
        pointer = nullptr;
    }
    return failure;
}

} // namespace ovra::gui

void ovra::templates::patterns::registerSingleton(GuardedSingletonBase& singleton)
{
    ovra::gui::LibraryInitController::registerSingleton(singleton);
}
