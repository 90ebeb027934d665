#include "platform/ProcessEnvironment.h"

#include <cstdlib>

namespace ovra::templates::platform {

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    // Copies: a string of ours would dangle in the environment once the library is unloaded.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): whoever starts the application does nothing beside it
    setenv(name.c_str(), value.c_str(), 1);
}

} // namespace ovra::templates::platform
