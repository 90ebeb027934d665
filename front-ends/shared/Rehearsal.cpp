// SPDX-License-Identifier: MIT
#include "Rehearsal.h"

#include "RequestError.h"

#include "ovra-core/reference/Rehearsal.h"

namespace ovra::frontend {

std::string rehearse(const std::string& step)
{
    try {
        return reference::rehearse(step);
    } catch (const std::runtime_error& refusal) {
        throw RequestError(refusal.what());
    }
}

} // namespace ovra::frontend
