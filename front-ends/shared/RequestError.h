// SPDX-License-Identifier: MIT
/// \file
/// RequestError: a request of the user that cannot be carried out.
#pragma once

#include <stdexcept>

namespace ovra::frontend {

/// The text is one line for the user: the request, the error, and if useful the alternatives. The request has
/// changed nothing.
class RequestError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace ovra::frontend
