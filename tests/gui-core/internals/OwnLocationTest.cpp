// SPDX-License-Identifier: MIT
// Tests of the library opened at run time from several places of an installation: whether it finds the
// installation, how long it stays loaded, how it ends. It opens the log dispatcher there, whose lines show
// the result.

#include "NewProcess.h"

#include "platform/ProcessEnvironment.h"
#include "tests/TemporaryFolder.h"

#include "gui-core/RuntimeBinding.h"
#include "simulation/common-logging-dispatcher/DispatcherControl.h"

#include <boost/dll/shared_library.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

using ovra::templates::platform::setEnvironmentVariable;

namespace {

constexpr char SEPARATOR = static_cast<char>(std::filesystem::path::preferred_separator);

/// A folder with the dispatcher in "bin" below \p root.
struct Installation : TemporaryFolder
{
    explicit Installation(const std::filesystem::path& root = "")
    {
        add(OVRA_DISPATCHER, root / "bin", "common-logging-dispatcher");
    }
};

/// True if a copy of the library in \p place finds the dispatcher.
bool findsIt(const Installation& folder, const std::filesystem::path& place)
{
    // A loader may take a library with the same name for the same library.
    static int copies = 0;
    const std::string name = "product" + std::to_string(++copies);
    setEnvironmentVariable("OVRA_LOG_FILE", folder.path(name + ".log").string());
    setEnvironmentVariable("OVRA_LOG_LEVEL", "2");
    {
        const boost::dll::shared_library library(folder.add(OVRA_PRODUCT, place, name));
        library.get<void()>("OvraGuiCoreInit")();
        library.get<void()>("OvraGuiCoreDeinit")();
    }
    return std::ranges::count(folder.read(name + ".log"), '\n') == 2;
}

} // namespace

TEST(OwnLocation, IsFoundInEveryProductFolderHoweverDeepAndNamed)
{
    for (const char* place : {"bin", "Hardware Applets/sub", "LIB64", "dll/model", "lib"}) {
        const Installation folder;
        EXPECT_TRUE(findsIt(folder, place)) << place;
    }
    // In the encoding of narrow paths.
    const char* umlaut = "a folder with blanks \xfc";
    const Installation folder(umlaut);
    EXPECT_TRUE(findsIt(folder, std::filesystem::path(umlaut) / "bin"));
}

TEST(OwnLocation, GivesWayToTheEnvironmentWhereNoFolderMatches)
{
    const Installation folder;
    EXPECT_FALSE(findsIt(folder, "elsewhere"));
    setEnvironmentVariable("OVRADIR5", folder.path().string());
    EXPECT_TRUE(findsIt(folder, "elsewhere")) << "by the second variable alone";
    setEnvironmentVariable("OVRADIR5", "not this one");
    setEnvironmentVariable("OVRADIR5_64", folder.path().string() + std::string(3, SEPARATOR));
    EXPECT_TRUE(findsIt(folder, "elsewhere")) << "by the first, whatever the second says";
    setEnvironmentVariable("OVRADIR5_64", std::string(2000, 'x'));
    EXPECT_FALSE(findsIt(folder, "elsewhere")) << "what does not fit is cut, and lies nowhere";
    EXPECT_TRUE(findsIt(folder, "bin")) << "its own place comes first";
}

TEST(OwnLocation, KeepsTheLibraryInTheProcessOnceItIsKnown)
{
    IN_A_NEW_PROCESS([] {
        const Installation folder;
        EXPECT_TRUE(findsIt(folder, "bin")); // and has closed the library
        const boost::dll::shared_library dispatcher(folder.path("bin") /
                                                    std::filesystem::path(OVRA_DISPATCHER).filename());
        dispatcher.get<LogSim_setLevel_t>("LogSim_setLevel")("guard.library", 7); // calls the library back
    });
}

TEST(RuntimeOfTheHostsChoice, IsBoundFromItsDirectory)
{
    const Installation folder; // without a runtime
    const boost::dll::shared_library library(folder.add(OVRA_PRODUCT, "bin", "product"));
    auto& bind = library.get<decltype(bindFglibFromDirectory)>("bindFglibFromDirectory");
    EXPECT_EQ(bind(nullptr), -5);
    EXPECT_EQ(bind(folder.path().string().c_str()), -2130);
    EXPECT_EQ(bind(OVRA_STAGE_DIR), 0);
}

TEST(ProcessEnd, AnExitHandlerOfTheHostMayEndTheLibraryLast)
{
    IN_A_NEW_PROCESS([] {
        static void (*deinit)();
        // Registered first, called last: the static objects of libraries that are opened later are destroyed
        // by then.
        std::atexit([] { deinit(); });
        const Installation folder;
        setEnvironmentVariable("OVRA_LOG_LEVEL", "2");
        const boost::dll::shared_library library(folder.add(OVRA_PRODUCT, "bin", "product"));
        deinit = library.get<void()>("OvraGuiCoreDeinit");
        library.get<void()>("OvraGuiCoreInit")();
    });
}
