#include "TemporaryInstallation.h"

#include "fglib/EntryTable.h"
#include "fglib/InstallationDirectory.h"
#include "platform/ProcessEnvironment.h"

#include "fglib5/Fglib5.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using namespace ovra::gui::fglib;
using ovra::tests::TemporaryInstallation;

namespace {

int innerCalls = 0;

Fg_Struct* countingInit(const char*, unsigned int)
{
    ++innerCalls;
    return nullptr;
}

class RuntimeVariants : public testing::Test
{
protected:
    ~RuntimeVariants() override
    {
        resolveEntries([](const void*, const char*) -> void* { return nullptr; }, nullptr);
    }

    /// An installation whose runtime is \p library.
    std::string with(const char* library)
    {
        installation.add(library, "bin", "fglib5");
        return installation.folder();
    }

    TemporaryInstallation installation;
};

} // namespace

TEST_F(RuntimeVariants, ARuntimeWithoutTheAppletIteratorAnswersWithTheMissingValues)
{
    ASSERT_EQ(bindFglib(with(OVRA_RUNTIME_WITHOUT_ITERATOR).c_str()), 0);
    FgAppletIterator* applets = nullptr;
    EXPECT_EQ(Fg_getAppletIterator(0, 0, &applets, 0), -2130);
    EXPECT_EQ(Fg_getAppletIteratorItem(nullptr, 0), nullptr);
    EXPECT_NE(Fg_getErrorDescription(nullptr, -1), nullptr) << "the others are bound";
}

TEST_F(RuntimeVariants, ARuntimeWithoutInitExIsResolvedAnewOnEveryCall)
{
    // The forwarders bind from the installation directory; this process has none but what is set here.
    ovra::templates::platform::setEnvironmentVariable("OVRADIR5_64", with(OVRA_RUNTIME_WITHOUT_INIT_EX));
    ASSERT_STREQ(getInstallationDirectory(), installation.folder().c_str());
    for (int round = 0; round < 2; ++round) {
        entryTable.Fg_getErrorDescription = nullptr;
        EXPECT_NE(Fg_getErrorDescription(nullptr, -1), nullptr);
        EXPECT_EQ(entryTable.Fg_InitEx.load(), nullptr);
    }
}

TEST_F(RuntimeVariants, TheRuntimesInnerCallsNeverPassThroughTheForwarders)
{
    ASSERT_EQ(bindFglib(with(OVRA_RUNTIME).c_str()), 0);
    entryTable.Fg_Init = &countingInit;
    Fg_Init("through the forwarder", 0);
    EXPECT_EQ(innerCalls, 1);
    // The runtime's Fg_InitConfig calls its own Fg_Init; were our function of that name visible, it would
    // come here.
    const std::string mcf = (installation.path() / "some.mcf").string();
    Fg_InitConfig(mcf.c_str(), 0);
    Fg_InitEx("some.hap", 0, 0);
    EXPECT_EQ(innerCalls, 1);
}

TEST_F(RuntimeVariants, ThreadsThatMakeTheFirstCallTogetherAllGetThrough)
{
    ovra::templates::platform::setEnvironmentVariable("OVRADIR5_64", with(OVRA_RUNTIME));
    std::vector<const char*> answers(8);
    {
        std::vector<std::jthread> threads;
        for (auto& answer : answers)
            threads.emplace_back([&answer] { answer = Fg_getErrorDescription(nullptr, -1); });
    }
    for (const char* answer : answers)
        EXPECT_NE(answer, nullptr);
}
