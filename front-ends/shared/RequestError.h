/// \file
/// RequestError: something that a user asked for and that cannot be done.
#pragma once

#include <stdexcept>

namespace ovra::frontend {

/// The text is one line for the user: what was asked for, what was wrong with it, and where it helps what
/// there is instead. Nothing was changed.
class RequestError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace ovra::frontend
