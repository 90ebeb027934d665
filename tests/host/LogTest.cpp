// The message log.

#include "LogCollector.h"
#include "RecordScope.h"

#include "ovra_log/reference/Log.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>

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

TEST(Log, WaitsForTheListenerThatIsTakenOff)
{
    struct Listener
    {
        std::promise<void> entered, go;
    } listener;
    OvraLogInit();
    OvraLogSetMessageCallback(
        [](auto, auto, auto, auto, auto, auto, auto, void* userData) {
            auto& self = *static_cast<Listener*>(userData);
            self.entered.set_value();
            self.go.get_future().wait();
        },
        &listener);
    std::thread other([] { say("held"); });
    listener.entered.get_future().wait();
    const RecordScope record;
    auto taken = std::async(std::launch::async, [] { OvraLogSetMessageCallback(nullptr, nullptr); });
    EXPECT_TRUE(record.waitFor("OvraLogSetMessageCallback null"));
    EXPECT_EQ(taken.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    listener.go.set_value();
    taken.get();
    other.join();
    OvraLogDeinit();
}

} // namespace
