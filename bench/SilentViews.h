// SPDX-License-Identifier: MIT
/// \file
/// SilentViews: a front end that costs nearly nothing. It prints warnings and errors to standard error, since
/// they make the measurement void.
#pragma once

#include "gui-core/Views.h"

#include <cstdio>

namespace ovra::bench {

struct SilentViews : gui::Views
{
    using Text = const std::string&;
    void showSplashscreenMessage(Text) override {}
    void showErrorMessage(Text, Text) override {}
    int showChoiceDialog(Text, Text, Text, Text, Text, bool*) override { return 2; }
    boost::shared_ptr<boost::signals2::scoped_connection>
    connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel>) override
    {
        return {};
    }
    void onInitializeBegin() override {}
    void onInitializeSync() override {}
    void onLoggingInstalled() override {}
    void onInitializationDone() override {}
    void onLoadAppletStarted() override {}
    void onLoadAppletFinished() override {}
    void showLoadingBoard(Text) override {}
    void showLoadingApplet(Text) override {}
    void showLoadAppletStatus(Text) override {}
    void showLoadAppletWarning(Text text) override { std::fprintf(stderr, "%s\n", text.c_str()); }
    void showLoadAppletError(Text text) override { std::fprintf(stderr, "%s\n", text.c_str()); }
    void update_acquisition_state() override {}
    void applet_unloaded() override {}
    void setRescanInProgress(bool) override {}
    void reservedSlot1() override {}
    void reservedSlot2() override {}
    void reservedSlot3() override {}
    void onCleanup() override {}
};

} // namespace ovra::bench
