// SPDX-License-Identifier: MIT
/// \file
/// Fields: the result of a command, for output as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace ovra::console {

using FieldValue = std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>,
                                std::vector<std::int64_t>>;

struct Field
{
    const char* name;
    FieldValue value;
};

/// In the order in which they are shown.
using Fields = std::vector<Field>;

} // namespace ovra::console
