/// \file
/// LibraryAllocations: lets an allocation of ovra-lib-gui-core fail. The program's operator new serves every
/// module of the process; an allocation counts as the library's when its code asked for it, be it through the
/// standard library.
#pragma once

#include <cstdint>

namespace ovra::tests {

class LibraryAllocations
{
public:
    /// Counts from now on; the \p nth one throws std::bad_alloc. 0: none.
    static void failAt(std::uint64_t nth);
    /// Ends the counting.
    static void stop();
    /// Allocations since failAt.
    static std::uint64_t count();
    /// Writes the stack of the allocation that failed last to standard output, as addresses in modules.
    static void printPlace();
};

} // namespace ovra::tests
