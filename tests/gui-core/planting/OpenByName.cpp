// SPDX-License-Identifier: MIT
// Opens a library by its bare name, which the library must not do. Shows that the system finds the decoys.

#include "platform/SharedLibrary.h"

int main(int, char** arguments)
{
    return SharedLibrary(arguments[1], false).load() ? 0 : 1;
}
