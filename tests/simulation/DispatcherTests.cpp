#include "Environment.h"
#include "Fixture.h"

#include "fglib5/LoggingDispatcher.h"
#include "simulation/common-logging-dispatcher/DispatcherControl.h"

namespace simulation::tests {

namespace {

template <class Function>
Function* control(const char* name)
{
    return reinterpret_cast<Function*>(symbolOf(OVRA_DISPATCHER, name));
}

} // namespace

class Dispatcher : public SimulationTest
{
protected:
    ~Dispatcher() override
    {
        descriptor().disconnect(this);
        for (const auto* name :
             {"OVRA_LOG_FILE", "OVRA_LOG_LEVEL", "OVRA_LOG_LEVELS", "OVRA_LOG_CALLBACK_ON_CONNECT"})
            setEnvironment(name, "");
    }

    static LoggingDispatcherDescriptor& descriptor()
    {
        return *reinterpret_cast<LoggingDispatcherDescriptor*>(
            symbolOf(OVRA_DISPATCHER, LOGGING_DISPATCHER_DESCRIPTOR_NAME));
    }

    void connect()
    {
        descriptor().connect(
            this, [](void* client) { static_cast<Dispatcher*>(client)->calls_.push_back("disconnect"); },
            [](void* client, std::uint64_t id, std::uint32_t level) {
                static_cast<Dispatcher*>(client)->calls_.push_back(std::to_string(id) + " " +
                                                                   std::to_string(level));
            },
            &register_, &log_);
    }

    std::pair<std::uint64_t, std::uint32_t> logger(const char* tag)
    {
        std::pair<std::uint64_t, std::uint32_t> answer;
        register_(tag, &answer.first, &answer.second);
        return answer;
    }

    LoggingRegisterFunction register_ = nullptr;
    LoggingLogFunction log_ = nullptr;
    std::vector<std::string> calls_;
};

TEST_F(Dispatcher, GivesEachTagAnIdAndItsThreshold)
{
    setEnvironment("OVRA_LOG_LEVEL", "4");
    setEnvironment("OVRA_LOG_LEVELS", "guard.library=2;nonsense;other=x");
    connect();
    const auto guard = logger("guard.library"), other = logger("other");
    EXPECT_GE(guard.first, 1U);
    EXPECT_EQ(guard.second, 2U);
    EXPECT_EQ(other.second, 4U);
    EXPECT_NE(other.first, guard.first);
    EXPECT_EQ(logger("other").first, other.first);
    EXPECT_TRUE(calls_.empty());
}

TEST_F(Dispatcher, WritesALineForEachMessageUntilItDisconnects)
{
    setEnvironment("OVRA_LOG_FILE", path("log.txt"));
    connect();
    const auto id = logger("lines.tag").first;
    log_(id, 2, "first", 0, 0);
    log_(id, 5, "second", 1, 2);
    EXPECT_EQ(read(path("log.txt")), "2 lines.tag first\n5 lines.tag second\n");
    control<LogSim_disconnect_t>("LogSim_disconnect")();
    EXPECT_EQ(calls_, std::vector<std::string>{"disconnect"});
    log_(id, 5, "third", 0, 0);
    EXPECT_EQ(read(path("log.txt")), "2 lines.tag first\n5 lines.tag second\n");
    setEnvironment("OVRA_LOG_FILE", "");
    connect(); // closes the file, so that the folder can go
}

TEST_F(Dispatcher, TellsItsClientOfNewThresholds)
{
    connect();
    const auto id = logger("told.tag").first;
    control<LogSim_setLevel_t>("LogSim_setLevel")("told.tag", 1);
    EXPECT_EQ(calls_, std::vector<std::string>{std::to_string(id) + " 1"});
    EXPECT_EQ(logger("told.tag").second, 1U);
    EXPECT_EQ(control<LogSim_loggerId_t>("LogSim_loggerId")("told.tag"), id);
    descriptor().disconnect(this);
    control<LogSim_setLevel_t>("LogSim_setLevel")("told.tag", 3);
    EXPECT_EQ(calls_.size(), 1U);
}

TEST_F(Dispatcher, CallsBackWhileItsClientConnectsWhereAsked)
{
    setEnvironment("OVRA_LOG_LEVELS", "early.tag=3");
    setEnvironment("OVRA_LOG_CALLBACK_ON_CONNECT", "early.tag");
    connect();
    EXPECT_EQ(calls_, std::vector<std::string>{std::to_string(logger("early.tag").first) + " 3"});
}

} // namespace simulation::tests
