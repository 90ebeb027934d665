/// \file
/// DeviceWrite: a scope in which a thread stands for the board, which writes into memory by itself.
///
/// A reader can be overtaken by its source (see DmaChannel.h). On hardware no tool sees that; here the thread
/// sanitizer would take it for a fault of the program, so it does not watch what is written in such a scope.
#pragma once

#if defined(__SANITIZE_THREAD__)
extern "C" {
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

namespace simulation {

class DeviceWrite
{
public:
#if defined(__SANITIZE_THREAD__)
    DeviceWrite()
    {
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }
    ~DeviceWrite()
    {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    }
#else
    DeviceWrite() {} // not defaulted: the scope's object would count as unused
#endif
    DeviceWrite(const DeviceWrite&) = delete;
    DeviceWrite& operator=(const DeviceWrite&) = delete;
};

} // namespace simulation
