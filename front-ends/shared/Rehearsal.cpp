// SPDX-License-Identifier: MIT
#include "Rehearsal.h"

#include "RequestError.h"

#include "ovra-core/reference/RuntimeEntries.h"

namespace ovra::frontend {

std::string rehearse(const std::string& step)
{
    constexpr std::size_t MAX_ANSWER_BYTES = 1U << 16;
    const auto runtime = reference::requireRuntime();
    if (!runtime->FgSim_perform)
        throw RequestError("only a virtual installation can rehearse; this is another one");
    std::string answer(MAX_ANSWER_BYTES, '\0');
    if (runtime->FgSim_perform(step.c_str(), answer.data(), answer.size()) != 0)
        throw RequestError(reference::lastFailureText(*runtime));
    answer.resize(answer.find('\0'));
    return answer;
}

} // namespace ovra::frontend
