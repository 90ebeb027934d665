// SPDX-License-Identifier: MIT
/// \file
/// DeviceWrite: a scope in which a thread plays the board, whose DMA writes into memory by itself.
///
/// The source can overwrite a buffer while a client reads it (see DmaChannel.h). With hardware no tool sees
/// that. Here the thread sanitizer would report it as a data race of the program, so it ignores writes in
/// this scope.
#pragma once

#if defined(OVRA_THREAD_SANITIZER)
extern "C" {
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

namespace simulation {

class DeviceWrite
{
public:
#if defined(OVRA_THREAD_SANITIZER)
    DeviceWrite()
    {
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }
    ~DeviceWrite()
    {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    }
#else
    DeviceWrite() {} // not defaulted: compilers would report the object as unused
#endif
    DeviceWrite(const DeviceWrite&) = delete;
    DeviceWrite& operator=(const DeviceWrite&) = delete;
};

} // namespace simulation
