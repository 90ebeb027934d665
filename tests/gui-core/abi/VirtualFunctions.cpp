// SPDX-License-Identifier: MIT
// All classes with virtual functions that front ends, hosts and the library share, for the compiler to lay
// out.

#include "RecordingViews.h"

#include "gui-core/AcquisitionBufferCountChangeCommand.h"
#include "gui-core/CleanupApplicationCommand.h"
#include "gui-core/Gui.h"
#include "gui-core/InitializeApplicationCommand.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/LoadMcfCommand.h"
#include "gui-core/RescanAppletsCommand.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/StoreMcfCommand.h"
#include "gui-core/UnloadAppletCommand.h"

namespace ovra::tests {

/// A front end that implements everything, so that every slot of its table bears a name.
struct CompleteViews final : RecordingViews
{
    void showBoardLinkConfigurationInHardwareDialog(unsigned int) override {}
    void showBoardInHardwareDialog(unsigned int) override {}
    void showBoardInCameraDialog(unsigned int) override {}
    void showBoardInAppletsDialog(unsigned int) override {}
    void raiseCameraDialog() override {}
    bool isInitialized() const override { return true; }
    void update_selected_views() override {}
};

/// Clang lays out the tables that are used.
template <class... Classes>
void destroy(Classes*... objects)
{
    (delete objects, ...);
}

using namespace gui::commands;
template void
destroy<core::Plugin, core::Command, CompleteViews, gui::Gui, AcquisitionBufferCountChangeCommand,
        CleanupApplicationCommand, InitializeApplicationCommand, LoadAppletCommand, LoadMcfCommand,
        RescanAppletsCommand, StartAcquisitionCommand, StopAcquisitionCommand, StoreMcfCommand,
        UnloadAppletCommand>(core::Plugin*, core::Command*, CompleteViews*, gui::Gui*,
                             AcquisitionBufferCountChangeCommand*, CleanupApplicationCommand*,
                             InitializeApplicationCommand*, LoadAppletCommand*, LoadMcfCommand*,
                             RescanAppletsCommand*, StartAcquisitionCommand*, StopAcquisitionCommand*,
                             StoreMcfCommand*, UnloadAppletCommand*);

} // namespace ovra::tests
