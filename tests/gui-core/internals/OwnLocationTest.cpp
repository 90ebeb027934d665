// The library itself, copied to where an installation may have it, and asked where it believes that is: it
// opens the log dispatcher there, which writes its lines.

#include "platform/ProcessEnvironment.h"
#include "tests/TemporaryFolder.h"

#include <boost/dll/shared_library.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using ovra::templates::platform::setEnvironmentVariable;

namespace {

constexpr char SEPARATOR = static_cast<char>(std::filesystem::path::preferred_separator);

/// A folder that has the dispatcher in the "bin" of \p root.
struct Installation : TemporaryFolder
{
    explicit Installation(const std::filesystem::path& root = "")
    {
        add(OVRA_DISPATCHER, root / "bin", "common-logging-dispatcher");
    }
};

/// Whether a copy of the library in \p place finds the dispatcher.
bool findsIt(const Installation& folder, const std::filesystem::path& place)
{
    // A loader may take an equal name for an equal library.
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
    // In the bytes that a narrow path is written with.
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
