// SPDX-License-Identifier: MIT
// Compares the versions of the headers and of the library, before any other use of the library.

#include "gui-core/Version.h"
#include "gui-core/EntryPoints.h"

#include <iostream>

int main()
{
    std::cout << OVRA_GUI_CORE_VERSION << ' ' << OVRA_GUI_CORE_VERSION_NUMBER << ' ' << OVRA_GUI_CORE_ABI
              << '\n'
              << OvraGuiCoreVersion() << ' ' << OvraGuiCoreVersionNumber() << ' ' << OvraGuiCoreAbi() << '\n';
    OvraGuiCoreInit();
    OvraGuiCoreDeinit();
}
