#include "LoadedApplet.h"

#include "simulation/fglib5/SimulationControl.h"

#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra_log/reference/Journal.h"

namespace ovra::tests {

LoadedApplet::~LoadedApplet()
{
    reference::Journal::stop();
}

std::string LoadedApplet::addLegacyApplet(const std::string& module)
{
    const std::string file = module + boost::dll::shared_library::suffix().string();
    return installation.addAlphaLibrary(module,
                                        contentOf(std::filesystem::path(OVRA_TEST_MODULES) / module / file));
}

std::string LoadedApplet::addInstalledLegacyApplet()
{
    return installation.addAlphaLibrary("legacy", contentOf(OVRA_LEGACY_APPLET));
}

std::string LoadedApplet::addWrappedApplet()
{
    return installation.addAlphaLibrary(
        "wrapped",
        R"({"format": "virtual-applet-1", "name": "wrapped", "boardType": 2625,
            "processes": [{"dmas": [4, 5], "ports": [0]}, {"ports": [1]}],
            "dmas": [{"index": 4, "width": 8, "height": 8}, {"index": 5, "width": 8, "height": 8}]})");
}

Lines LoadedApplet::toldAbout() const
{
    Lines told;
    for (const auto& line : views->lines())
        if (line.rfind("status", 0) == 0 || line.rfind("warning", 0) == 0 || line.rfind("error", 0) == 0)
            told.push_back(line);
    return told;
}

bool LoadedApplet::isLoaded(int serial) const
{
    return board(serial)->getLoadedAppletEntry() != nullptr;
}

void LoadedApplet::expectNothingHeldByTheRuntime() const
{
    EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 0);
    EXPECT_EQ(installation.live(FGSIM_RINGS), 0);
    EXPECT_EQ(gui::Gui::getUsedDmaMemory(), 0U);
    EXPECT_EQ(views->eventConnections(), 0U);
}

std::size_t LoadedApplet::sweep(const std::function<void()>& prepare, const std::function<void()>& act,
                                const std::function<void(bool)>& check) const
{
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE("host call " + std::to_string(n) + " throws");
        prepare();
        reference::Journal::start();
        reference::Journal::throwAt(n);
        bool thrown = false;
        try {
            act();
        } catch (const reference::ReferenceFault&) {
            thrown = true;
        }
        reference::Journal::stop();
        EXPECT_EQ(thrown, reference::Journal::faultStruck());
        check(thrown);
        if (!thrown || HasFailure())
            return n - 1;
    }
}

void LoadedApplet::expectNothingLeftOf(int serial) const
{
    expectEmptyBoard(serial);
    expectNothingHeldByTheRuntime();
}

std::string with(const std::string& description, const std::string& fields)
{
    return description + ", " + fields;
}

} // namespace ovra::tests
