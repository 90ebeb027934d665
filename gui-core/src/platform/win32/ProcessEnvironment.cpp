// SPDX-License-Identifier: MIT
#include "platform/ProcessEnvironment.h"

#include <cstdlib>

namespace ovra::templates::platform {

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    _putenv((name + "=" + value).c_str());
}

} // namespace ovra::templates::platform
