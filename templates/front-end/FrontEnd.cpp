// SPDX-License-Identifier: MIT
// A front end to begin with: loads an applet onto the first board, acquires one image, and prints the
// distribution of its grey values. Your front end draws instead, and lets the user choose.

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "gui-core/Version.h"
#include "gui-core/Views.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/PixelConversion.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/make_shared.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace ovra;
using Text = const std::string&;
using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;

/// The library calls these operations: on the GUI thread, except connectFglibEvents and logMsgCallback.
class FrontEndViews final : public gui::Views
{
public:
    /// Returns the last error since the previous call, or an empty text.
    std::string takeError() { return std::exchange(m_error, {}); }

    void setError(Text message) { m_error = message; }

    void showErrorMessage(Text title, Text message) override { m_error = title + ": " + message; }
    void showLoadAppletError(Text message) override { m_error = message; }
    void showLoadAppletWarning(Text message) override { std::cout << "Warning: " << message << '\n'; }
    void showLoadAppletStatus(Text message) override { std::cout << message << '\n'; }

    /// Image sizes of camera and DMA channel differ: 0 changes the channel, 1 the camera, 2 nothing.
    int showChoiceDialog(Text, Text, Text, Text, Text, bool*) override { return 0; }

    /// Without a subscription there are no events.
    boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel>) override
    {
        return {};
    }

    // A front end with windows would show these.
    void onInitializeBegin() override {}
    void onLoggingInstalled() override {}
    void onInitializeSync() override {}
    void showSplashscreenMessage(Text) override {}
    void onInitializationDone() override {}
    void onCleanup() override {}
    void onLoadAppletStarted() override {}
    void onLoadAppletFinished() override {}
    void showLoadingBoard(Text) override {}
    void showLoadingApplet(Text) override {}
    void update_acquisition_state() override {}
    void applet_unloaded() override {}
    void setRescanInProgress(bool) override {}
    void reservedSlot1() override {}
    void reservedSlot2() override {}
    void reservedSlot3() override {}

private:
    std::string m_error;
};

/// Counts the grey values of the newest image.
class Histogram final : public display::DisplaySceneVisualizer
{
public:
    static constexpr std::size_t BARS = 8;

    /// On the scene's thread; the pixels are valid during the call only.
    void showImage(const display::Image& image) override
    {
        display::unpackGrey(image, m_samples); // of any format
        std::array<std::size_t, BARS> counts{};
        const int depth = display::describe(image.format).significantBits;
        for (const std::size_t sample : m_samples)
            ++counts[(sample * BARS) >> depth];
        const std::lock_guard lock(m_mutex);
        m_counts = counts;
        m_width = image.width;
        m_height = image.height;
    }

    bool empty() const
    {
        const std::lock_guard lock(m_mutex);
        return m_width == 0;
    }

    void print() const
    {
        const std::lock_guard lock(m_mutex);
        std::cout << m_width << " x " << m_height << " pixels\n";
        for (std::size_t bar = 0; bar < BARS; ++bar)
            std::cout << std::setw(3) << bar * 256 / BARS << " - " << std::setw(3)
                      << (bar + 1) * 256 / BARS - 1 << ' ' << m_counts[bar] << '\n';
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::uint16_t> m_samples; ///< scene's thread only; kept so that no image needs new memory
    std::array<std::size_t, BARS> m_counts{};
    int m_width = 0;
    int m_height = 0;
};

/// Passes the scene's images to a visualizer for as long as it lives.
class Showing final
{
public:
    Showing(boost::shared_ptr<display::DisplayScene> scene, Histogram& histogram) : m_scene(std::move(scene))
    {
        m_scene->setVisualizer(&histogram);
    }
    ~Showing() { m_scene->setVisualizer(nullptr); }
    Showing(const Showing&) = delete;
    Showing& operator=(const Showing&) = delete;

private:
    boost::shared_ptr<display::DisplayScene> m_scene;
};

/// The application with the library plugged in.
class Session
{
public:
    Session()
    {
        m_application.setErrorHandler(
            [this](const auto& failure) { m_views->setError(failure.command + ": " + failure.message); });
        const boost::shared_ptr<gui::Gui> plugin(gui::Gui::createInstance(), gui::Gui::destroyInstance);
        m_application.addPlugin(plugin, {{gui::keys::VIEWS, boost::shared_ptr<gui::Views>(m_views)}});
        m_application.startPlugins();
        waitUntil([&] { return m_application.idle(); }, "The application does not start");
    }
    ~Session() { m_application.stopPlugins(); }

    /// Submits \p command and returns when it has ended, and every command that it submitted.
    void run(const boost::shared_ptr<core::Command>& command)
    {
        core::HarloApplication::commandprocessor()->executeCommand(command);
        waitUntil([&] { return m_application.idle(); }, "The command does not end");
        if (const auto error = m_views->takeError(); !error.empty())
            throw std::runtime_error(error);
    }

    /// Runs the event loop until \p condition holds; throws \p complaint after a minute.
    void waitUntil(const std::function<bool()>& condition, Text complaint)
    {
        if (!m_application.pumpUntil(condition, std::chrono::minutes(1)))
            throw std::runtime_error(complaint);
    }

private:
    reference::Application m_application;
    boost::shared_ptr<FrontEndViews> m_views = boost::make_shared<FrontEndViews>();
};

/// The model lists boards by serial number, which need not be the order of their indices.
boost::shared_ptr<HlEnvironmentBoardNode> firstBoard()
{
    const auto boards =
        gui::Gui::environment()->model()->root()->getSourcesEntry(gui::keys::SOURCE)->getBoards();
    if (!boards->hasNext())
        throw std::runtime_error("This machine has no board");
    return boards->current();
}

std::string pathOfApplet(Text name)
{
    const auto files = gui::Gui::environment()->model()->root()->getFilesEntryNode()->getAllFiles();
    for (; files->hasNext(); files->advance())
        if (files->current()->getFileName() == name)
            return files->current()->getFilePath();
    throw std::runtime_error("There is no applet " + name);
}

boost::shared_ptr<HlEnvironmentDmaNode> firstChannel(const HlEnvironmentBoardNode& board)
{
    const auto channels = board.getDmas();
    if (!channels->hasNext())
        throw std::runtime_error("This applet has no DMA channel");
    return channels->current();
}

void showOneImage(Session& session, Text applet)
{
    const auto board = firstBoard();
    const auto serial = static_cast<int>(board->getSerial());
    session.run(gui::commands::LoadAppletCommand::create(serial, pathOfApplet(applet), ""));

    Histogram histogram;
    const auto channel = firstChannel(*board);
    const auto scene = channel->getDisplayScene();
    const Showing showing(scene, histogram);
    session.run(gui::commands::StartAcquisitionCommand::create(channel, -1)); // until it is stopped
    session.waitUntil([&] { return !histogram.empty() || !scene->isGrabbing(); }, "No image comes");
    session.run(gui::commands::StopAcquisitionCommand::create(channel));
    if (histogram.empty())
        throw std::runtime_error("The acquisition ended without an image");
    histogram.print();

    session.run(gui::commands::UnloadAppletCommand::create(serial));
}

} // namespace

int main(int argc, char** argv)
{
    // Before anything else is called: another compiler's library, or an older one, would crash.
    if (const auto mismatch = gui::libraryMismatch(); !mismatch.empty()) {
        std::cerr << mismatch << '\n';
        return 1;
    }
    OvraGuiCoreInit();
    int exitCode = 0;
    try {
        Session session;
        showOneImage(session, argc > 1 ? argv[1] : "SingleAreaGray.hap");
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        exitCode = 1;
    }
    OvraGuiCoreDeinit();
    return exitCode;
}
