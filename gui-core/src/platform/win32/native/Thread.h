/// \file
/// The calling thread's numeric id.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// Unique among the running threads of the process, never 0.
std::uint32_t currentThreadId();

} // namespace ovra::templates::platform
