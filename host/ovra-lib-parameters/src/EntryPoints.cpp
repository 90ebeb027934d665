// SPDX-License-Identifier: MIT
#include "ovra-lib-parameters/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraParametersInit()
{
    ovra::reference::probe("OvraParametersInit");
    ovra::reference::libraryStarted("ovra-lib-parameters");
}

void OvraParametersDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-parameters");
    ovra::reference::probe("OvraParametersDeinit");
}
