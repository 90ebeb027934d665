// SPDX-License-Identifier: MIT
#include "gui-core/Version.h"

const char* OvraGuiCoreVersion() noexcept
{
    return OVRA_GUI_CORE_VERSION;
}

unsigned int OvraGuiCoreVersionNumber() noexcept
{
    return OVRA_GUI_CORE_VERSION_NUMBER;
}

const char* OvraGuiCoreAbi() noexcept
{
    return OVRA_GUI_CORE_ABI;
}
