// SPDX-License-Identifier: MIT
#include "front-ends/console/Interrupts.h"

#include <gtest/gtest.h>

using ovra::console::Interrupts;
using ovra::frontend::Signal;

namespace {

TEST(InterruptSequence, AtATerminalCtrlCEndsTheCommandAndASecondOneTheSession)
{
    Interrupts interrupts(true);
    int woken = 0;
    interrupts.setWakeUp([&] { ++woken; });
    interrupts.handle(Signal::Interrupt);
    EXPECT_TRUE(interrupts.commandEnds());
    EXPECT_FALSE(interrupts.sessionEnds());
    EXPECT_EQ(interrupts.pending(), 1);
    interrupts.forget(1);
    EXPECT_FALSE(interrupts.commandEnds());
    interrupts.handle(Signal::Interrupt); // the first one again
    EXPECT_FALSE(interrupts.sessionEnds());
    interrupts.handle(Signal::Interrupt);
    EXPECT_TRUE(interrupts.sessionEnds());
    interrupts.forget(2);
    EXPECT_TRUE(interrupts.commandEnds());
    EXPECT_EQ(woken, 3);
}

TEST(InterruptSequence, EveryOtherSignalEndsTheSessionAndAHangupMayComeTwice)
{
    Interrupts terminal(true), script(false);
    terminal.handle(Signal::Hangup);
    terminal.handle(Signal::Hangup);
    EXPECT_TRUE(terminal.sessionEnds());
    script.handle(Signal::Interrupt);
    EXPECT_TRUE(script.sessionEnds());
}

} // namespace
