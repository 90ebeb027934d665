// SPDX-License-Identifier: MIT
/// \file
/// The standard tests: one list for each subject.
#pragma once

#include "conformance/Test.h"

namespace ovra::conformance {

std::vector<Test> commandTests();
std::vector<Test> failureTests();
std::vector<Test> terminationTests();
std::vector<Test> modelTests();
std::vector<Test> boardTests();
std::vector<Test> sceneTests();
std::vector<Test> bufferTests();
std::vector<Test> applicationTests();

} // namespace ovra::conformance
