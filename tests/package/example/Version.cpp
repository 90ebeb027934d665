#include "gui-core/EntryPoints.h"

int main()
{
    OvraGuiCoreInit();
    OvraGuiCoreDeinit();
}
