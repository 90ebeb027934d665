// SPDX-License-Identifier: MIT
// The message log.

#include "LogCollector.h"

#include "ovra_log/reference/Log.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>

namespace {

using testing::ElementsAre;

void say(const char* text)
{
    OvraLogMessage(2, "file", 1, text, 0, nullptr);
}

TEST(Log, DropsMessagesBeforeItStartsAndAfterItEnds)
{
    std::vector<std::string> seen;
    {
        const LogCollector collector;
        say("within");
        OvraLogDeinit();
        say("ended");
        OvraLogInit();
        say("again");
        seen = collector.texts(2);
    }
    EXPECT_THAT(seen, ElementsAre("within", "again"));
}

TEST(Log, NamesSourceFilesWithoutTheFoldersOfTheMachineTheyWereBuiltOn)
{
    const LogCollector collector;
    for (const char* file : {"/home/build/host/Unix.cpp", R"(C:\build\host\Windows.cpp)", "Plain.cpp"})
        OvraLogMessage(2, file, 1, "text", 0, nullptr);
    OvraLogMessage(2, nullptr, 1, "text", 0, nullptr);
    ovra::reference::log(ovra::reference::LogLevel::Error, "text");
    EXPECT_THAT(collector.files(), ElementsAre("Unix.cpp", "Windows.cpp", "Plain.cpp", "", "LogTest.cpp"));
}

TEST(Log, LetsAListenerLogAndKeepsItsFailuresFromTheHost)
{
    static std::atomic<int> depth;
    depth = 0;
    OvraLogInit();
    OvraLogSetMessageCallback(
        [](auto, auto, auto, auto, auto, auto, auto, auto) {
            if (++depth == 1)
                say("from the listener");
            throw std::runtime_error("view");
        },
        nullptr);
    EXPECT_NO_THROW(ovra::reference::log(ovra::reference::LogLevel::Error, "first"));
    OvraLogSetMessageCallback(nullptr, nullptr);
    OvraLogDeinit();
    EXPECT_EQ(depth, 2);
}

} // namespace
