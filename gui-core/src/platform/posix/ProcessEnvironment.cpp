// SPDX-License-Identifier: MIT
#include "platform/ProcessEnvironment.h"

#include <cstdlib>

namespace ovra::templates::platform {

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    // setenv copies: a string of this library would dangle once the library is unloaded.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs while the application starts
    setenv(name.c_str(), value.c_str(), 1);
}

} // namespace ovra::templates::platform
