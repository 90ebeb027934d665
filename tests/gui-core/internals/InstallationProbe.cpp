// A library that can be put anywhere and asked where it believes its installation is.

#include "fglib/InstallationDirectory.h"

#include "gui-core/Export.h"

extern "C" OVRA_GUI_CORE_API const char* askInstallation()
{
    return ovra::gui::fglib::getInstallationDirectory();
}
