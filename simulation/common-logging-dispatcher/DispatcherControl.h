/// \file
/// Dispatcher control: what the simulated log dispatcher exports beside its descriptor. The functions are
/// looked up by name in the opened library, so this header declares function types only.
///
///   LogSim_setLevel          changes the threshold of a tag and tells the client
///   LogSim_disconnect        takes no more messages and tells the client
///   LogSim_loggerId          id of a tag's logger, 0 where the tag is unknown
///   LogSim_messageCount      messages taken so far
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

using LogSim_setLevel_t = void(const char* tag, std::uint32_t threshold);
using LogSim_disconnect_t = void();
using LogSim_loggerId_t = std::uint64_t(const char* tag);
using LogSim_messageCount_t = std::uint64_t();

} // extern "C"
