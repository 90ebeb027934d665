#include "LibraryInitController.h"

#include "platform/SpinLockVariableGuard.h"

#include <atomic>
#include <cstdio>
#include <utility>

namespace ovra::gui {

using templates::patterns::GuardedSingletonBase;
using templates::platform::SpinLockVariableGuard;

namespace {

// Turned on by hand, for a look at the order of start-ups and shut-downs without a debugger.
constexpr bool CONSOLE_TRACE = false;

// A spin lock although the start-ups under it may block: it is part of the library's contract that a host
// library may call back on the same thread meanwhile, and start-up is over before other threads have work
// here.
std::atomic<std::int32_t> controllerLock{0};
std::atomic<std::uint32_t> controllerOwner{0};
std::uint32_t uses = 0;
// Only the last release destroys it. The end of the process does not: an exit handler may come back later.
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

/// A flag that is up for the length of a scope.
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
    // Counted even if there is no memory for the controller: every call is balanced alike.
    const std::uint32_t count = ++uses;
    // One is there already when a host library starts this one again while it is being shut down.
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
    if (uses == 0) { // not started again meanwhile
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
    // Lists are taken out before they are walked: what is being shut down may register anew. First started,
    // first stopped: the host's libraries are used to that order.
    do {
        for (const Function function : std::exchange(m_shutDowns, {})) {
            try {
                function();
            } catch (...) {
                if (!failure)
                    failure = std::current_exception();
            }
        }
    } while (uses == 0 && !m_shutDowns.empty()); // started meanwhile, and taken back

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
