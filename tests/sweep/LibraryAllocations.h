// SPDX-License-Identifier: MIT
/// \file
/// LibraryAllocations: makes an allocation of ovra-lib-gui-core fail. The program's operator new serves every
/// module of the process. An allocation counts as the library's if its code requested it, directly or through
/// the standard library.
#pragma once

#include <cstdint>

namespace ovra::tests {

class LibraryAllocations
{
public:
    /// Starts counting; the \p nth allocation throws std::bad_alloc. 0: none.
    static void failAt(std::uint64_t nth);
    /// Ends the counting.
    static void stop();
    /// Allocations since failAt.
    static std::uint64_t count();
    /// Prints the stack of the last allocation that failed, as addresses in modules.
    static void printPlace();
};

} // namespace ovra::tests
