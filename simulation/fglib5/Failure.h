// SPDX-License-Identifier: MIT
/// \file
/// Failure: the exception of the runtime's implementation. The exported entry turns it into a code or null.
#pragma once

#include <stdexcept>
#include <string>

namespace simulation {

/// A status code and a one-line message.
class Failure : public std::runtime_error
{
public:
    Failure(int code, const std::string& line) : std::runtime_error(line), m_code(code) {}

    int code() const noexcept { return m_code; }

private:
    int m_code;
};

/// Description of a status code of Fglib5Types.h; null for any other number.
const char* descriptionOf(int code) noexcept;

/// The last failure of the calling thread; 0 and "" before the first. Each thread has its own, so that two
/// threads that fail at once read their own reasons.
int lastErrorNumber() noexcept;
const char* lastErrorDescription() noexcept;
void setLastError(int code, const char* line) noexcept;

} // namespace simulation
