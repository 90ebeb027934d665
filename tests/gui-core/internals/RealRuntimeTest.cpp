// SPDX-License-Identifier: MIT
// Tests of the forwarders with a runtime that the platform's loader opens.

#include "fglib/EntryTable.h"
#include "platform/ProcessEnvironment.h"
#include "tests/TemporaryFolder.h"

#include "fglib5/Fglib5.h"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/dll/shared_library.hpp>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace ovra::gui::fglib;

namespace {

int innerCalls = 0;

Fg_Struct* countingInit(const char*, unsigned int)
{
    ++innerCalls;
    return nullptr;
}

struct RealRuntime : testing::Test
{
    ~RealRuntime() override { entryTable.Fg_InitEx = nullptr; } // the table counts as unbound again
};

} // namespace

TEST_F(RealRuntime, NeverPassesItsInnerCallsThroughTheForwarders)
{
    ASSERT_EQ(bindFglib(OVRA_STAGE_DIR), 0);
    // Nor does it lend its symbols to the rest of the process.
    EXPECT_FALSE(boost::dll::shared_library(boost::dll::program_location()).has("FgSim_setListener"));
    entryTable.Fg_Init = &countingInit;
    Fg_Init("through the forwarder", 0);
    EXPECT_EQ(innerCalls, 1);
    // The runtime's Fg_InitConfig calls its own Fg_Init. If the library's forwarder of that name were
    // visible, the call would go there.
    Fg_InitConfig(TemporaryFolder().path("some.mcf").string().c_str(), 0);
    Fg_InitEx("some.hap", 0, 0);
    EXPECT_EQ(innerCalls, 1);
}

TEST_F(RealRuntime, IsBoundByThreadsThatMakeTheFirstCallTogether)
{
    // The forwarders bind from the installation directory, which only this variable sets here.
    ovra::templates::platform::setEnvironmentVariable("OVRADIR5_64", OVRA_STAGE_DIR);
    std::vector<const char*> answers(8);
    {
        std::vector<std::jthread> threads;
        for (auto& answer : answers)
            threads.emplace_back([&answer] { answer = Fg_getErrorDescription(nullptr, -1); });
    }
    for (const char* answer : answers)
        EXPECT_NE(answer, nullptr);
}
