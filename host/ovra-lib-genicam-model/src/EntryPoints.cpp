// SPDX-License-Identifier: MIT
#include "ovra-lib-genicam-model/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraGenicamModelInit()
{
    ovra::reference::probe("OvraGenicamModelInit");
    ovra::reference::libraryStarted("ovra-lib-genicam-model");
}

void OvraGenicamModelDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-genicam-model");
    ovra::reference::probe("OvraGenicamModelDeinit");
}
