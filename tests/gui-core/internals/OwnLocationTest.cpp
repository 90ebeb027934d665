#include "TemporaryInstallation.h"

#include "platform/ProcessEnvironment.h"

#include <boost/dll/shared_library.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using ovra::templates::platform::setEnvironmentVariable;
using ovra::tests::TemporaryInstallation;

namespace {

using Ask = const char*();

/// A copy of the probe, which resolves its installation once, from where it lies.
class Probe
{
public:
    explicit Probe(const std::filesystem::path& file) : m_library(file) {}

    /// "(none)" where it finds nothing.
    std::string ask() const
    {
        const char* folder = m_library.get<Ask>("askInstallation")();
        return folder ? folder : "(none)";
    }

private:
    boost::dll::shared_library m_library;
};

/// On some systems the temporary folder is reached through a link; a library knows its real place.
std::string realPath(const std::filesystem::path& path)
{
    return std::filesystem::canonical(path).string();
}

} // namespace

TEST(OwnLocation, IsFoundInEveryProductFolderHoweverDeepAndNamed)
{
    const char* places[] = {"bin", "Hardware Applets/sub",         "LIB64", "dll/model",
                            "lib", "a folder with blanks \xfc/bin"};
    for (std::size_t i = 0; i < std::size(places); ++i) {
        SCOPED_TRACE(places[i]);
        TemporaryInstallation installation;
        const std::filesystem::path place(places[i]);
        // One name for each: a loader may take an equal name for an equal library.
        const Probe probe(installation.add(OVRA_INSTALLATION_PROBE, place, "probe" + std::to_string(i)));
        const bool nested = place.parent_path().string().rfind("a folder", 0) == 0;
        EXPECT_EQ(probe.ask(),
                  realPath(nested ? installation.path() / place.parent_path() : installation.path()));
    }
}

TEST(OwnLocation, GivesWayToTheEnvironmentWhereNoFolderMatches)
{
    TemporaryInstallation installation;
    const Probe probe(installation.add(OVRA_INSTALLATION_PROBE, "elsewhere", "probe"));
    EXPECT_EQ(probe.ask(), "(none)");
    EXPECT_EQ(probe.ask(), "(none)");

    const std::string separators(3, static_cast<char>(std::filesystem::path::preferred_separator));
    const std::string first = installation.folder();
    setEnvironmentVariable("OVRADIR5", "not this one");
    setEnvironmentVariable("OVRADIR5_64", first + separators);
    EXPECT_EQ(probe.ask(), first);
    setEnvironmentVariable("OVRADIR5_64", "changed too late");
    EXPECT_EQ(probe.ask(), first);
}

TEST(OwnLocation, TakesTheSecondVariableWhereTheFirstIsMissingAndCutsWhatIsTooLong)
{
    TemporaryInstallation installation;
    const Probe probe(installation.add(OVRA_INSTALLATION_PROBE, "elsewhere", "probe"));
    setEnvironmentVariable("OVRADIR5", std::string(2000, 'x'));
    EXPECT_EQ(probe.ask(), std::string(1023, 'x'));
}
