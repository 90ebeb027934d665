// SPDX-License-Identifier: MIT
#include "server/Token.h"

#include <random>

namespace ovra::viewer {

std::string makeToken()
{
    constexpr std::string_view DIGITS = "0123456789abcdef";
    constexpr int DIGIT_COUNT = 32;
    constexpr unsigned BITS_OF_A_DIGIT = 0xf;
    std::random_device random;
    std::string token;
    for (int i = 0; i < DIGIT_COUNT; ++i)
        token += DIGITS[random() & BITS_OF_A_DIGIT];
    return token;
}

bool sameToken(std::string_view left, std::string_view right)
{
    if (left.size() != right.size())
        return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < left.size(); ++i)
        difference |= static_cast<unsigned>(left[i] ^ right[i]);
    return difference == 0;
}

} // namespace ovra::viewer
