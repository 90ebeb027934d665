// SPDX-License-Identifier: MIT
#include "ovra-core/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraCoreInit()
{
    ovra::reference::probe("OvraCoreInit");
    ovra::reference::libraryStarted("ovra-core");
}

void OvraCoreDeinit()
{
    ovra::reference::libraryEnded("ovra-core");
    ovra::reference::probe("OvraCoreDeinit");
}
