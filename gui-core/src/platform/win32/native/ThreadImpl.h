// SPDX-License-Identifier: MIT
/// \file
/// The calling thread's id on Windows: the system's.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// See platform/Thread.h.
std::uint32_t currentThreadId();

} // namespace ovra::templates::platform
