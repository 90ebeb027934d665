/// \file
/// Whether the user wants the session to end.
#pragma once

#include <functional>

namespace ovra::console {

/// From now on the first signal to end the program is noted, and the next one ends it at once. Call once,
/// before other threads start.
void noteInterrupts();

/// Any thread. Whether there was such a signal.
bool interrupted();

/// \p wakeUp is called, on a thread of its own, when such a signal comes; empty: nothing is.
void onInterrupt(std::function<void()> wakeUp);

} // namespace ovra::console
