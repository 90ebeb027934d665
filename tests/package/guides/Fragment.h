// SPDX-License-Identifier: MIT
// Declarations that the fragments in the guides use.
#pragma once

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/Version.h"
#include "gui-core/Views.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/PixelConversion.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace ovra;
using MyViews = gui::Views;

#define FRAGMENT(name)                                                                  \
    void name(reference::Application& application, boost::shared_ptr<gui::Views> views, \
              boost::shared_ptr<core::models::HlEnvironmentBoardNode> board,            \
              boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma,                \
              boost::shared_ptr<core::models::HlEnvironmentFileNode> file, int serial)
