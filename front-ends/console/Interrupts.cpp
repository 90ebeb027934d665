#include "Interrupts.h"

#include "front-ends/shared/Process.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace ovra::console {

namespace {

std::atomic<bool> wasInterrupted{false};
std::mutex wakeUpMutex;
std::function<void()> wakeUpFunction;

void handle(frontend::Signal signal)
{
    if (wasInterrupted.exchange(true)) {
        if (signal != frontend::Signal::Hangup) // comes from the shell and from the system
            frontend::endAtOnce(signal);
        return;
    }
    const std::lock_guard lock(wakeUpMutex);
    if (wakeUpFunction)
        wakeUpFunction();
}

} // namespace

void noteInterrupts()
{
    frontend::handleSignals(handle);
}

bool interrupted()
{
    return wasInterrupted;
}

void onInterrupt(std::function<void()> wakeUp)
{
    const std::lock_guard lock(wakeUpMutex);
    wakeUpFunction = std::move(wakeUp);
}

} // namespace ovra::console
