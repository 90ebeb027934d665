// SPDX-License-Identifier: MIT
#include "ovra-lib-display-fglib/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraDisplayFglibInit()
{
    ovra::reference::probe("OvraDisplayFglibInit");
    ovra::reference::libraryStarted("ovra-lib-display-fglib");
}

void OvraDisplayFglibDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-display-fglib");
    ovra::reference::probe("OvraDisplayFglibDeinit");
}
