// SPDX-License-Identifier: MIT
/// \file
/// Dispatcher control: the exports of the simulated log dispatcher beside its descriptor. Clients look the
/// functions up by name in the opened library, so this header declares function types only.
/// DispatcherControl.inc lists and documents them.
///
/// When a client connects, the dispatcher reads its settings from environment variables:
///
///   OVRA_LOG_FILE                  the file that lines are appended to; default: standard error
///   OVRA_LOG_LEVEL                 threshold of all loggers; default: 7
///   OVRA_LOG_LEVELS                thresholds by tag: "guard.library=2;other=5"
///   OVRA_LOG_CALLBACK_ON_CONNECT   tags separated by ";": the dispatcher calls onSetLevel for these loggers
///                                  while the client connects, once it has both functions
///
/// A message becomes one line: its level, its logger's tag, its text. All functions may be called from any
/// thread. The dispatcher calls the client without holding a lock.
#pragma once

#include <cstdint>

extern "C" {

// LogSim_setLevel_t and so on: the types of the functions.
#define LOGSIM_ENTRY(result, name, parameters) using name##_t = result parameters;
#include "simulation/common-logging-dispatcher/DispatcherControl.inc"

} // extern "C"
