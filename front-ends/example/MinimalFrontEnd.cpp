// SPDX-License-Identifier: MIT
// A complete front end: starts the application, lists the boards, ends.
#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/Version.h"
#include "gui-core/Views.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include <boost/make_shared.hpp>
#include <iostream>
using namespace ovra;

struct MinimalViews final : gui::Views
{
    using Text = const std::string&;
    void showSplashscreenMessage(Text message) override { std::cout << message << '\n'; }
    void showErrorMessage(Text title, Text message) override
    {
        std::cerr << title << ": " << message << '\n';
    }
    int showChoiceDialog(Text, Text, Text, Text, Text, bool*) override { return 2; } // start anyway
    boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel>) override
    {
        return {};
    }

    // This front end ignores the rest, and operations with a default.
    void onInitializeBegin() override {}
    void onInitializeSync() override {}
    void onLoggingInstalled() override {}
    void onInitializationDone() override {}
    void onLoadAppletStarted() override {}
    void onLoadAppletFinished() override {}
    void showLoadingBoard(Text) override {}
    void showLoadingApplet(Text) override {}
    void showLoadAppletStatus(Text) override {}
    void showLoadAppletWarning(Text) override {}
    void showLoadAppletError(Text) override {}
    void update_acquisition_state() override {}
    void applet_unloaded() override {}
    void setRescanInProgress(bool) override {}
    void reservedSlot1() override {}
    void reservedSlot2() override {}
    void reservedSlot3() override {}
    void onCleanup() override {}
};

void listBoards()
{
    reference::Application application; // shares the plug-in, and releases it at its own end
    application.setErrorHandler([](const auto& failure) { std::cerr << failure.message << '\n'; });
    boost::shared_ptr<gui::Views> views = boost::make_shared<MinimalViews>(); // of exactly this type
    boost::shared_ptr<gui::Gui> plugin(gui::Gui::createInstance(), gui::Gui::destroyInstance);
    application.addPlugin(plugin, {{gui::keys::VIEWS, views}});
    application.startPlugins();
    if (!application.pumpUntil([&] { return application.idle(); }, std::chrono::minutes(1)))
        std::cerr << "The start takes longer than a minute\n";
    if (const auto boards = gui::Gui::environment()->model()->root()->getSourcesEntry(gui::keys::SOURCE))
        for (const auto board = boards->getBoards(); board->hasNext(); board->advance())
            std::cout << board->current()->getIndex() << " - " << board->current()->getBoardName() << '\n';
    application.stopPlugins();
}

int main()
{
    if (const auto mismatch = gui::libraryMismatch(); !mismatch.empty()) {
        std::cerr << mismatch << '\n';
        return 1;
    }
    OvraGuiCoreInit();
    listBoards();
    OvraGuiCoreDeinit();
}
