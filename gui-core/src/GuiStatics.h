// SPDX-License-Identifier: MIT
/// \file
/// GuiStatics: links Gui's static functions to the state of the most recently created Gui.
#pragma once

#include "gui-core/Gui.h"
#include "platform/GuardedSingleton.h"

#include "ovra-lib-environment/Environment.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <atomic>

namespace ovra::gui {

/// The state of a Gui.
struct Gui::State
{
    boost::shared_ptr<Views> views;
    boost::shared_ptr<core::Environment> environment = core::Environment::create();
    // A front end sets these two on the GUI thread while a command on the worker reads them.
    std::atomic<SyncMode> syncMode{SyncProcess};
    std::atomic<bool> streamChannelManagementEnabled{false};
    // Frame-buffer groups change it on the worker and on the GUI thread.
    std::atomic<unsigned long long> usedDmaMemory{0};
};

/// Holds the state weakly: the Gui owns it, and the static functions find nothing once that is gone.
class GuiStatics : public templates::patterns::GuardedSingleton<GuiStatics>
{
public:
    boost::weak_ptr<Gui::State> state;

    /// The current state; empty while no Gui exists.
    static boost::shared_ptr<Gui::State> currentState() { return instance().state.lock(); }
};

} // namespace ovra::gui
