#include "Environment.h"

#include <stdlib.h>

namespace simulation::tests {

void setEnvironment(const char* name, const std::string& value)
{
    _putenv_s(name, value.c_str());
}

} // namespace simulation::tests
