/// \file
/// How the inside of the runtime fails: with an exception that the entry turns into its own kind of failure.
#pragma once

#include <stdexcept>
#include <string>

namespace simulation {

/// A status code and one line for a person.
class Failure : public std::runtime_error
{
public:
    Failure(int code, const std::string& line) : std::runtime_error(line), m_code(code) {}

    int code() const noexcept { return m_code; }

private:
    int m_code;
};

/// Description of a status code of Fglib5Types.h, null for any other number.
const char* descriptionOf(int code) noexcept;

/// The failure that the calling thread met last; 0 and "" before the first. Kept by thread, so that two
/// threads that fail at once each read their own reason.
int lastErrorNumber() noexcept;
const char* lastErrorDescription() noexcept;
void setLastError(int code, const char* line) noexcept;

} // namespace simulation
