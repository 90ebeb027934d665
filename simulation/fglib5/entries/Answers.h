// SPDX-License-Identifier: MIT
/// \file
/// Functions that several entries use: they check arguments and copy results out.
#pragma once

#include "Failure.h"
#include "hardware/Grabber.h"
#include "hardware/Runtime.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace simulation {

inline std::shared_ptr<Grabber> grabberOf(Fg_Struct* handle)
{
    return Runtime::instance().grabber(handle);
}

/// Throws FG_INVALID_ARGUMENT for a null pointer.
template <class T>
T* checkedArgument(T* argument, const char* name)
{
    if (argument == nullptr)
        throw Failure(FG_INVALID_ARGUMENT, std::string("The argument ") + name + " is missing");
    return argument;
}

/// Copies \p bytes bytes to \p target, which has \p *room bytes, and sets \p *room to \p bytes. A null target
/// only gets the size.
inline void copyOut(const void* data, std::size_t bytes, void* target, std::size_t* room)
{
    const auto offered = *checkedArgument(room, "for the size");
    *room = bytes;
    if (target == nullptr)
        return;
    if (offered < bytes)
        throw Failure(FG_INVALID_ARGUMENT, "The answer takes " + std::to_string(bytes) +
                                               " bytes, there is room for " + std::to_string(offered));
    std::memcpy(target, data, bytes);
}

inline void copyTextOut(const std::string& text, char* target, std::size_t* room)
{
    copyOut(text.c_str(), text.size() + 1, target, room);
}

/// For an entry that has called another entry: fails with the same code and text.
[[noreturn]] inline void failLikeInner()
{
    throw Failure(lastErrorNumber(), lastErrorDescription());
}

} // namespace simulation
