// SPDX-License-Identifier: MIT
// A front end that implements everything, so that every slot of its virtual table has a name.

#include "RecordingViews.h"

namespace ovra::tests {

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

CompleteViews views;

} // namespace ovra::tests
