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
    struct Row
    {
        const char* place;
        const char*
            installation; ///< below the temporary folder, in the bytes that a narrow path is written with
    };
    const Row rows[] = {
        {"bin", ""},   {"Hardware Applets/sub", ""},
        {"LIB64", ""}, {"dll/model", ""},
        {"lib", ""},   {"a folder with blanks \xfc/bin", "a folder with blanks \xfc"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.place);
        TemporaryInstallation installation;
        // One name for each: a loader may take an equal name for an equal library.
        const std::string name = "probe" + std::to_string(&row - rows);
        const Probe probe(installation.add(OVRA_INSTALLATION_PROBE, row.place, name));
        std::string expected = realPath(installation.path());
        if (*row.installation)
            expected +=
                static_cast<char>(std::filesystem::path::preferred_separator) + std::string(row.installation);
        EXPECT_EQ(probe.ask(), expected);
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
