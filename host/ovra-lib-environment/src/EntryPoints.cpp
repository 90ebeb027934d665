#include "ovra-lib-environment/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

void OvraEnvironmentInit()
{
    ovra::reference::probe("OvraEnvironmentInit");
    ovra::reference::libraryStarted("ovra-lib-environment");
}

void OvraEnvironmentDeinit()
{
    ovra::reference::libraryEnded("ovra-lib-environment");
    ovra::reference::probe("OvraEnvironmentDeinit");
}
