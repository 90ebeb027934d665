// SPDX-License-Identifier: MIT
#include "ovra-lib-fglib-model/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraFglibModelInit()
{
    ovra::reference::probe("OvraFglibModelInit");
    ovra::reference::libraryStarted("ovra-lib-fglib-model");
}

void OvraFglibModelDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-fglib-model");
    ovra::reference::probe("OvraFglibModelDeinit");
}
