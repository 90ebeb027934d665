#include "Environment.h"

#include <stdlib.h>

namespace simulation::tests {

void setEnvironment(const char* name, const std::string& value)
{
    setenv(name, value.c_str(), 1);
}

} // namespace simulation::tests
