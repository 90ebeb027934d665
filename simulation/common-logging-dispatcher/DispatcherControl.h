/// \file
/// Dispatcher control: what the simulated log dispatcher exports beside its descriptor. The functions are
/// looked up by name in the opened library, so this header declares function types only.
/// DispatcherControl.inc lists them and says what each does.
///
/// What the dispatcher does from the start is set in the environment, which is read when a client connects:
///
///   OVRA_LOG_FILE                  the file that lines are appended to; standard error where it is missing
///   OVRA_LOG_LEVEL                 threshold of all loggers, 7 where it is missing
///   OVRA_LOG_LEVELS                thresholds by tag: "guard.library=2;other=5"
///   OVRA_LOG_CALLBACK_ON_CONNECT   tags separated by ";": the client is called back for these loggers
///                                  while it connects, as soon as it has both functions
///
/// A message becomes one line: its level, its logger's tag, its text. All functions may be called from any
/// thread; none is called back under a lock.
#pragma once

#include <cstdint>

extern "C" {

// LogSim_setLevel_t and so on: the types of the functions.
#define LOGSIM_ENTRY(result, name, parameters) using name##_t = result parameters;
#include "simulation/common-logging-dispatcher/DispatcherControl.inc"

} // extern "C"
