// SPDX-License-Identifier: MIT
/// \file
/// HandleGuard: closes an applet library at the end of the scope that queries it.
#pragma once

#include "platform/Guard.h"
#include "platform/SharedLibrary.h"

namespace ovra::gui::commands {

/// Owns \p library's module if it is loaded.
class [[nodiscard]] HandleGuard : public templates::patterns::Guard<SharedLibrary*>
{
public:
    explicit HandleGuard(SharedLibrary* library) : Guard(library, library->isLoaded()) {}
    ~HandleGuard() override
    {
        if (owns())
            object()->close();
    }
};

} // namespace ovra::gui::commands
