// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/EntryPoints.h"

#include "ovra-lib-genicam-model/EntryPoints.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraEnvironmentInit()
{
    ovra::reference::probe("OvraEnvironmentInit");
    {
        const ovra::reference::Unrecorded own;
        OvraGenicamModelInit();
    }
    ovra::reference::libraryStarted("ovra-lib-environment");
}

void OvraEnvironmentDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-environment");
    {
        const ovra::reference::Unrecorded own;
        OvraGenicamModelDeinit();
    }
    ovra::reference::probe("OvraEnvironmentDeinit");
}
