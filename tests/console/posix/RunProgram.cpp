// SPDX-License-Identifier: MIT
#include "../RunProgram.h"

#include <cstdlib>
#include <stdexcept>

#include <sys/wait.h>

namespace ovra::tests {

int runProgram(const ProgramRun& run)
{
    std::string command = "'" + run.program.string() + "'";
    for (const auto& argument : run.arguments)
        command += " '" + argument + "'";
    command += " <'" + run.input.string() + "' >'" + run.output.string() + "' 2>&1";

    const int status = std::system(command.c_str()); // NOLINT(concurrency-mt-unsafe): one thread
    if (!WIFEXITED(status))
        throw std::runtime_error("did not end by itself: " + command);
    return WEXITSTATUS(status);
}

} // namespace ovra::tests
