// SPDX-License-Identifier: MIT
#include "ovra-lib-display/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraDisplayInit()
{
    ovra::reference::probe("OvraDisplayInit");
    ovra::reference::libraryStarted("ovra-lib-display");
}

void OvraDisplayDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-display");
    ovra::reference::probe("OvraDisplayDeinit");
}
