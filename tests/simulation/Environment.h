/// \file
/// Environment variables of the test's own process. EnvironmentPosix.cpp or EnvironmentWin32.cpp.
#pragma once

#include <string>

namespace simulation::tests {

/// As every module of the process reads it with std::getenv; "" counts as missing.
void setEnvironment(const char* name, const std::string& value);

} // namespace simulation::tests
