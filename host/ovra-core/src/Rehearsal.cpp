// SPDX-License-Identifier: MIT
#include "ovra-core/reference/Rehearsal.h"

#include "ovra-core/reference/RuntimeEntries.h"

#include <cstddef>
#include <stdexcept>

namespace ovra::reference {

std::string rehearse(const std::string& step)
{
    constexpr std::size_t MAX_ANSWER_BYTES = 1U << 16;
    const auto runtime = requireRuntime();
    if (!runtime->FgSim_perform)
        throw std::runtime_error("only a virtual installation can rehearse; this is another one");
    std::string answer(MAX_ANSWER_BYTES, '\0');
    if (runtime->FgSim_perform(step.c_str(), answer.data(), answer.size()) != 0)
        throw std::runtime_error(lastFailureText(*runtime));
    answer.resize(answer.find('\0'));
    return answer;
}

} // namespace ovra::reference
