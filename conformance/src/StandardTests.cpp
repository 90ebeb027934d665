// SPDX-License-Identifier: MIT
#include "Tests.h"

namespace ovra::conformance {

std::vector<Test> standardTests()
{
    std::vector<Test> all;
    for (const auto subject : {commandTests, failureTests, terminationTests, modelTests, boardTests,
                               sceneTests, bufferTests, applicationTests}) {
        const auto tests = subject();
        all.insert(all.end(), tests.begin(), tests.end());
    }
    return all;
}

} // namespace ovra::conformance
