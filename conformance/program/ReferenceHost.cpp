// SPDX-License-Identifier: MIT
// The reference host, with its virtual installation.

#include "LinkedHost.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/reference/BoardHandleObserver.h"
#include "ovra-lib-genicam-model/GenICamModel.h"
#include "ovra_log/OvraLog.h"
#include "ovra_log/reference/LibraryUse.h"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/dll/shared_library.hpp>

#include <optional>
#include <stdexcept>
#include <utility>

namespace ovra::conformance {

namespace {

constexpr const char* APPLET = "Hardware Applets/ovra-quad-cl/SingleAreaGray.hap";
constexpr unsigned int BOARD = 0, PORT = 0, DMA = 0;

/// A board of the virtual installation whose camera is running.
class VirtualChannel final : public ChannelUnderTest
{
public:
    explicit VirtualChannel(const std::filesystem::path& installation)
        : m_runtime((installation / "bin" / "fglib5").concat(boost::dll::shared_library::suffix().string()),
                    boost::dll::load_mode::load_with_altered_search_path)
    {
        const auto init = m_runtime.get<Fg_Struct_s*(const char*, unsigned int)>("Fg_Init");
        const auto applet = (installation / APPLET).u8string();
        m_handle = init(std::string(applet.begin(), applet.end()).c_str(), BOARD);
        if (!m_handle)
            throw std::runtime_error(std::string(APPLET) + " cannot be loaded onto board 0");
        m_camera = core::models::GenICamModel::create(BOARD, PORT);
        m_camera->restartAcquisition();
    }
    ~VirtualChannel() override
    {
        m_camera->stopAcquisition();
        m_runtime.get<int(Fg_Struct_s*)>("Fg_FreeGrabber")(m_handle);
    }
    VirtualChannel(const VirtualChannel&) = delete;
    VirtualChannel& operator=(const VirtualChannel&) = delete;

    Fg_Struct_s* handle() const override { return m_handle; }
    int board() const override { return BOARD; }
    unsigned int dma() const override { return DMA; }

private:
    boost::dll::shared_library m_runtime;
    Fg_Struct_s* m_handle = nullptr;
    boost::shared_ptr<core::models::GenICamModel> m_camera;
};

class CallingVisualizer final : public display::DisplaySceneVisualizer
{
public:
    explicit CallingVisualizer(std::function<void()> call) : m_call(std::move(call)) {}
    void showImage(const display::Image&) override { m_call(); }

private:
    const std::function<void()> m_call;
};

class ReferenceHost final : public HostUnderTest
{
public:
    std::string name() const override { return "reference host"; }

    void startApplication() override
    {
        const auto installation = m_installation.u8string();
        m_application.emplace(reference::ApplicationOptions{
            .runtimeDirectory = std::string(installation.begin(), installation.end()),
            .runtimeLibrary = {},
            .configurationFile = {}});
        m_application->setErrorHandler([](const reference::PhaseFailure&) {}); // tests cause failures
    }

    // NOLINTNEXTLINE(bugprone-unchecked-optional-access): a test starts the application first
    void processEvents() override { m_application->processEvents(); }

    std::unique_ptr<ChannelUnderTest> openChannel() override
    {
        return std::make_unique<VirtualChannel>(m_installation);
    }

    void observeHandle(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board,
                       std::function<void(Fg_Struct_s*)> observer) override
    {
        reference::BoardHandleObserver::connect(board, observer);
    }

    std::unique_ptr<display::DisplaySceneVisualizer> makeVisualizer(std::function<void()> showImage) override
    {
        return std::make_unique<CallingVisualizer>(std::move(showImage));
    }

    void logMessage(const std::string& text) override
    {
        constexpr unsigned long INFORMATION = 2;
        OvraLogMessage(INFORMATION, __FILE__, __LINE__, text.c_str(), 0, nullptr);
    }

    int libraryUses(const std::string& library) override { return reference::libraryUses(library); }

private:
    // This program is in "bin" of the installation.
    const std::filesystem::path m_installation = boost::dll::program_location().parent_path().parent_path();
    std::optional<reference::Application> m_application;
};

} // namespace

std::unique_ptr<HostUnderTest> linkedHost()
{
    return std::make_unique<ReferenceHost>();
}

} // namespace ovra::conformance
