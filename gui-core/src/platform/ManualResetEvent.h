/// \file
/// ManualResetEvent: a signal that stays until it is taken back.
///
/// Initially signalled. set() signals and wakes every waiting thread, reset() takes the signal back, wait()
/// returns at once while it is signalled and blocks otherwise until set(). Any thread. It can be neither
/// copied nor moved. The constructor throws std::system_error when the system has no event left.
#pragma once

#include "native/ManualResetEventImpl.h"
