// SPDX-License-Identifier: MIT
/// \file
/// Points in time as text.
#pragma once

#include <chrono>
#include <string>

namespace ovra::frontend {

/// "2026-01-31T09:05:00.123456Z"; "" for the epoch, which means an unknown time.
std::string utcText(std::chrono::system_clock::time_point time);

} // namespace ovra::frontend
