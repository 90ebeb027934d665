// SPDX-License-Identifier: MIT
/// \file
/// ManualResetEvent: a signal that stays until reset().
///
/// Initially signalled. set() signals and wakes every waiting thread, reset() clears the signal, wait()
/// returns at once while it is signalled and otherwise blocks until set(). Any thread. It can be neither
/// copied nor moved. The constructor throws std::system_error if the system has no event left.
#pragma once

#include "native/ManualResetEventImpl.h"
