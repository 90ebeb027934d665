// SPDX-License-Identifier: MIT
#include "NewProcess.h"
#include "RecordingViews.h"
#include "messages/LogForwarding.h"
#include "messages/ShowSplashscreenMessageEvent.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra_log/OvraLog.h"
#include "ovra_log/reference/Journal.h"

#include <gtest/gtest.h>

#include <tuple>

using ovra::gui::Gui;
using ovra::gui::Views;
using ovra::tests::RecordingViews;

namespace {

boost::shared_ptr<Gui> createGui()
{
    return {Gui::createInstance(), &Gui::destroyInstance};
}

void expectDefaults()
{
    EXPECT_FALSE(Gui::views());
    EXPECT_FALSE(Gui::environment());
    EXPECT_EQ(Gui::getSyncMode(), Gui::SyncNone);
    EXPECT_FALSE(Gui::isStreamChannelManagementEnabled());
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
    EXPECT_EQ(Gui::getTotalDmaMemory(), 0U);
}

boost::any viewsValue(const boost::shared_ptr<RecordingViews>& views)
{
    return boost::shared_ptr<Views>(views);
}

} // namespace

TEST(GuiState, WithoutAGuiEveryFunctionGivesItsDefaultAndChangesNothing)
{
    ovra::reference::Application application;
    ovra::core::HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 5);
    expectDefaults();
    Gui::setSyncMode(Gui::SyncAllBoards);
    Gui::setStreamChannelManagementEnabled(true);
    Gui::updateUsedMemory(100);
    expectDefaults();
    {
        const auto gui = createGui();
        EXPECT_EQ(Gui::getTotalDmaMemory(), 5ULL << 20);
    }
    expectDefaults();
    Gui::destroyInstance(nullptr);
}

TEST(GuiState, ANewGuiHasItsInitialValuesAndUsedMemoryIsAPlainSumThatMayWrap)
{
    ovra::reference::Application application;
    const auto gui = createGui();
    EXPECT_FALSE(Gui::views());
    EXPECT_TRUE(Gui::environment());
    EXPECT_EQ(Gui::getSyncMode(), Gui::SyncProcess);
    EXPECT_FALSE(Gui::isStreamChannelManagementEnabled());
    EXPECT_EQ(Gui::getTotalDmaMemory(), 1073741824U);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
    Gui::updateUsedMemory(3000);
    Gui::updateUsedMemory(-3000);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
    Gui::updateUsedMemory(-1);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0xFFFFFFFFFFFFFFFFULL);
}

TEST(GuiState, ASecondGuiTakesTheStaticFunctionsOver)
{
    auto first = createGui();
    Gui::setSyncMode(Gui::SyncBoard);
    auto second = createGui();
    EXPECT_EQ(Gui::getSyncMode(), Gui::SyncProcess);
    Gui::setStreamChannelManagementEnabled(true);
    first.reset();
    EXPECT_TRUE(Gui::isStreamChannelManagementEnabled());
    second.reset();
    expectDefaults();
}

TEST(GuiState, AFinalDeinitForgetsTheGuiOfBefore)
{
    // An earlier test may have created the holder while no controller existed; such a holder is never
    // destroyed.
    IN_A_NEW_PROCESS([] {
        OvraGuiCoreInit();
        const auto gui = createGui();
        EXPECT_EQ(Gui::getSyncMode(), Gui::SyncProcess);
        OvraGuiCoreDeinit();
        expectDefaults();
    });
}

TEST(GuiInjection, TakesViewsByTheirExactKeyAndTypeAndReplacesThem)
{
    const auto gui = createGui();
    const auto first = boost::make_shared<RecordingViews>();
    const auto second = boost::make_shared<RecordingViews>();
    for (const char* key : {"", "view", "viewsX", "Views"})
        gui->injectDependency(key, viewsValue(first));
    EXPECT_FALSE(Gui::views());
    for (const auto& views : {first, second}) {
        gui->injectDependency("views", viewsValue(views));
        EXPECT_EQ(Gui::views(), views);
        EXPECT_FALSE(views->isInitialized()) << "unless a front end says so";
    }
    // The same object with another type than the key requires: the earlier views stay.
    EXPECT_THROW(gui->injectDependency("views", boost::any(first)), boost::bad_any_cast);
    EXPECT_THROW(gui->injectDependency("views", boost::any(7)), boost::bad_any_cast);
    EXPECT_EQ(Gui::views(), second);
}

TEST(GuiInjection, PassesTheConnectorOnToTheEnvironmentAndNothingElse)
{
    const auto gui = createGui();
    ovra::reference::Journal::start();
    gui->injectDependency("connector", boost::any(7));
    gui->injectDependency("connectors", boost::any(7));
    gui->injectDependency("views", viewsValue(boost::make_shared<RecordingViews>()));
    ovra::reference::Journal::stop();
    const auto lines = ovra::reference::Journal::lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].rfind("Environment::injectDependency", 0), 0U) << lines[0];
}

TEST(Events, OfTheSplashScreenRunAsEvents)
{
    const auto event = ovra::gui::commands::ShowSplashscreenMessageEvent::create("text");
    EXPECT_EQ(event->type(), ovra::core::Command::Event);
}

TEST(LogForwarding, ReachesTheFrontEndAndIsDroppedWithoutOne)
{
    ovra::gui::messages::forwardLogMessage(1, 2, "file", 3, "lost", 0, nullptr, nullptr);
    const auto gui = createGui();
    const auto views = boost::make_shared<RecordingViews>();
    gui->injectDependency("views", viewsValue(views));
    int userData = 0;
    const tOvraLogTag tag{9, "tag"};
    ovra::gui::messages::forwardLogMessage(0, 2, "file", 3, "found", 1, &tag, &userData);
    EXPECT_EQ(views->logMessages(), std::vector<std::string>{"found"});
    EXPECT_EQ(views->lastLogArguments,
              std::make_tuple(0UL, 2UL, std::string("file"), 3U, 1U, &tag, static_cast<void*>(&userData)));
}
