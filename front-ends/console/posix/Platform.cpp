#include "../Platform.h"

#include <cstdlib>

#include <unistd.h>

namespace ovra::console {

bool inputIsTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

bool outputIsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

void prepareTerminal() {}

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): no other thread yet
}

} // namespace ovra::console
