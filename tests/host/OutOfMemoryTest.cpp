// SPDX-License-Identifier: MIT
// What a failing allocation leaves in the host.

#include "FailingAllocations.h"

#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <utility>

namespace {

using ovra::core::Command;

struct Phases : Command
{
    using Command::Command;
    void executeSync() override { ++begun; }
    void executePostAsync() override { ++ended; }
    int begun = 0, ended = 0;
};

TEST(OutOfMemory, LeavesNoCommandUnderWay)
{
    ovra::reference::Application application;
    const auto processor = ovra::core::HarloApplication::commandprocessor();
    const auto pump = [&] {
        return application.pumpUntil([&] { return application.idle(); }, std::chrono::minutes(1));
    };
    for (const bool onGuiThread : {true, false}) {
        bool failed = true;
        for (int nth = 1; failed; ++nth) {
            SCOPED_TRACE(nth);
            const auto command = boost::make_shared<Phases>(Command::Asynchronous);
            const auto submit = [&] {
                ovra::tests::allocationsUntilFailure = nth;
                try {
                    processor->executeCommand(command);
                } catch (const std::bad_alloc&) {
                }
                failed = std::exchange(ovra::tests::allocationsUntilFailure, 0) == 0;
            };
            if (onGuiThread)
                submit();
            else
                std::thread(submit).join();
            ASSERT_TRUE(pump());
            EXPECT_EQ(command->begun, command->ended);
            EXPECT_NO_THROW(processor->executeCommand(command));
            ASSERT_TRUE(pump());
        }
    }
}

} // namespace
