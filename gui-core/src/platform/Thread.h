// SPDX-License-Identifier: MIT
/// \file
/// The calling thread's numeric id.
///
/// std::uint32_t currentThreadId() is unique among the running threads of the process, and never 0.
#pragma once

#include "native/ThreadImpl.h"
