// SPDX-License-Identifier: MIT
// What a host or a program does that opens the library by itself: asks first, starts it then.

#include "gui-core/EntryPoints.h"
#include "gui-core/Version.h"

#include <iostream>

#include <windows.h>

namespace {

template <class Function>
Function* locate(HMODULE library, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

} // namespace

int main(int, char** arguments)
{
    const auto library = LoadLibraryA(arguments[1]);
    const auto abi = locate<decltype(OvraGuiCoreAbi)>(library, "OvraGuiCoreAbi");
    const auto version = locate<decltype(OvraGuiCoreVersionNumber)>(library, "OvraGuiCoreVersionNumber");
    if (!library || !abi || !version) {
        std::cout << "No ovra-lib-gui-core: " << arguments[1] << '\n';
        return 2;
    }
    if (const auto mismatch = ovra::gui::libraryMismatch(version(), abi()); !mismatch.empty()) {
        std::cout << mismatch << '\n';
        return 1;
    }
    locate<decltype(OvraGuiCoreInit)>(library, "OvraGuiCoreInit")();
    locate<decltype(OvraGuiCoreDeinit)>(library, "OvraGuiCoreDeinit")();
    std::cout << "Started and ended\n";
}
