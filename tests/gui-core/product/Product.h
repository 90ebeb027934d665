// SPDX-License-Identifier: MIT
/// \file
/// Product: a fixture that runs the whole library on the reference host and a virtual installation. Includes
/// the library's commands and the host's headers that most tests need.
#pragma once

#include "RecordingViews.h"
#include "VirtualInstallation.h"

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

#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/reference/Journal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ovra::tests {

using namespace gui::commands;
using core::HarloApplication;
using gui::Gui;
using reference::Journal;
using Lines = std::vector<std::string>;

/// A number of images.
inline constexpr int ENDLESS = -1;

// Descriptions of applets, without name and board type.
inline const std::string SINGLE = R"("processes": [{"dmas": [0], "ports": [0]}],
    "dmas": [{"index": 0, "width": 64, "height": 48}])";
inline const std::string DOUBLE = R"("tags": ["interface=cl-medium", "interface=cl-base"],
    "processes": [{"dmas": [12, 1], "ports": [1]}, {"dmas": [2], "ports": [2, 0, 10]}],
    "dmas": [{"index": 1, "width": 64, "height": 48, "generator": {"pattern": "ramp"}},
             {"index": 2, "width": 64, "height": 48}, {"index": 12, "width": 32, "height": 16}])";
inline const std::string NO_DMA = R"("processes": [{"ports": [0]}])";

struct ImageCounter : display::DisplaySceneVisualizer
{
    void showImage(const display::Image&) override { ++images; }
    std::atomic<int> images{0};
};

class Product : public testing::Test
{
public:
    Product();
    ~Product() override;

    /// Starts the library and the application, and waits until the application is ready.
    void start();
    /// Cleans the application up and ends the library; otherwise the destructor does.
    void stop();

    void submit(const boost::shared_ptr<core::Command>& command);
    /// Waits until no command is running.
    void settle();
    void run(const boost::shared_ptr<core::Command>& command)
    {
        submit(command);
        settle();
    }
    void load(int serial, const std::string& applet, const std::string& mcf = "")
    {
        run(LoadAppletCommand::create(serial, applet, mcf));
    }
    void unload(int serial) { run(UnloadAppletCommand::create(serial)); }
    void pumpUntil(const std::function<bool()>& condition);

    boost::shared_ptr<core::models::HlEnvironmentBoardNode> board(int serial) const;
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma(int serial, unsigned int index) const;
    boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> port(int serial, unsigned int index) const;
    bool isLoaded(int serial) const { return board(serial)->getLoadedAppletEntry() != nullptr; }
    /// All keys of the global resource model, with the type before each: "1 board-...".
    Lines resources() const;
    /// The front end's lines that begin with one of \p prefixes.
    Lines told(const Lines& prefixes) const;

    /// Expects a board without an applet, and none of its keys.
    void expectEmptyBoard(int serial) const;
    /// Like expectEmptyBoard; also expects no handle, image memory or subscription of any board.
    void expectNothingLeftOf(int serial) const;

    /// Runs \p act again and again, and lets its 1st, 2nd, ... host call throw, until it passes without a
    /// fault. Calls \p prepare before each run, and \p check after it, with whether it threw. Returns the
    /// number of runs that threw.
    std::size_t sweep(const std::function<void()>& prepare, const std::function<void()>& act,
                      const std::function<void(bool)>& check) const;

    VirtualInstallation installation;
    reference::Application application;
    boost::shared_ptr<RecordingViews> views = boost::make_shared<RecordingViews>();
    Lines failures; ///< "class phase: message" of phases that threw

private:
    bool m_started = false;
};

/// An application from its start to its end, for tests that need several.
class Session : public Product
{
    void TestBody() override {}
};

/// The journal's lines that begin with one of \p prefixes.
Lines journalOf(const Lines& prefixes);

} // namespace ovra::tests
