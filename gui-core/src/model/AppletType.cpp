// SPDX-License-Identifier: MIT
#include "model/AppletType.h"

#include "ovra-lib-environment/HlEnvironmentFileNode.h"

namespace ovra::gui::model {

AppletType appletType(const core::models::HlEnvironmentFileNode& file)
{
    const std::string type = file.getType();
    if (type == "DLL")
        return file.getWrapped() ? AppletType::Dll : AppletType::LegacyDll;
    return type == "HAP" ? AppletType::Hap : AppletType::Unknown;
}

const char* appletTypeName(AppletType type)
{
    switch (type) {
    case AppletType::LegacyDll:
        return "Legacy DLL";
    case AppletType::Dll:
        return "DLL";
    case AppletType::Hap:
        return "HAP";
    default:
        return "Unknown";
    }
}

} // namespace ovra::gui::model
