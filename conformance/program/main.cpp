// SPDX-License-Identifier: MIT
#include "LinkedHost.h"

#include "conformance/Program.h"

int main(int argc, char** argv)
{
    using namespace ovra::conformance;
    return runProgram(argc, argv, linkedHost, standardTests());
}
