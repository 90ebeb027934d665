// SPDX-License-Identifier: MIT
/// \file
/// Allocations that fail. The program's operator new serves the host's libraries on Linux; on Windows, where each
/// library has its own, none of theirs fails.
#pragma once

namespace ovra::tests {

/// The calling thread's allocation with this number, from now on, fails. 0: none.
extern thread_local int allocationsUntilFailure;

} // namespace ovra::tests
