// SPDX-License-Identifier: MIT
#include "Fixture.h"

#include "fglib5/LoggingDispatcher.h"
#include "platform/ProcessEnvironment.h"
#include "simulation/common-logging-dispatcher/DispatcherControl.h"

namespace simulation::tests {

using ovra::templates::platform::setEnvironmentVariable;

using testing::ElementsAre;

class Dispatcher : public SimulationTest
{
protected:
    ~Dispatcher() override
    {
        control<LogSim_disconnect_t>("LogSim_disconnect")(); // would call this object otherwise
        for (const auto* name : {"OVRA_LOG_LEVEL", "OVRA_LOG_LEVELS", "OVRA_LOG_CALLBACK_ON_CONNECT"})
            setEnvironmentVariable(name, "");
    }

    static LoggingDispatcherDescriptor& descriptor()
    {
        return *reinterpret_cast<LoggingDispatcherDescriptor*>(
            symbolOf(OVRA_DISPATCHER, LOGGING_DISPATCHER_DESCRIPTOR_NAME));
    }

    void connect()
    {
        LoggingLogFunction log = nullptr;
        descriptor().connect(
            this,
            [](void* client) { static_cast<Dispatcher*>(client)->m_calls.emplace_back("disconnected"); },
            [](void* client, std::uint64_t id, std::uint32_t level) {
                static_cast<Dispatcher*>(client)->m_calls.push_back(std::to_string(id) + " " +
                                                                    std::to_string(level));
            },
            &m_register, &log);
    }

    template <class Function>
    static Function* control(const char* name)
    {
        return reinterpret_cast<Function*>(symbolOf(OVRA_DISPATCHER, name));
    }

    std::pair<std::uint64_t, std::uint32_t> logger(const char* tag)
    {
        std::pair<std::uint64_t, std::uint32_t> answer;
        m_register(tag, &answer.first, &answer.second);
        return answer;
    }

    LoggingRegisterFunction m_register = nullptr;
    std::vector<std::string> m_calls;
};

TEST_F(Dispatcher, GivesEachTagAnIdAndItsThresholdAndTellsItsClientOfNewOnesUntilItIsDisconnected)
{
    setEnvironmentVariable("OVRA_LOG_LEVEL", "4");
    setEnvironmentVariable("OVRA_LOG_LEVELS", "own=2;nonsense;other=x");
    setEnvironmentVariable("OVRA_LOG_CALLBACK_ON_CONNECT", "own"); // that is before connect() returns
    connect();
    const auto own = logger("own"), other = logger("other");
    EXPECT_GE(own.first, 1U);
    EXPECT_EQ(own.second, 2U);
    EXPECT_EQ(other.second, 4U);
    EXPECT_NE(other.first, own.first);
    EXPECT_EQ(logger("other"), other);
    EXPECT_EQ(control<LogSim_loggerId_t>("LogSim_loggerId")("other"), other.first);
    const auto setLevel = control<LogSim_setLevel_t>("LogSim_setLevel");
    setLevel("other", 1);
    control<LogSim_disconnect_t>("LogSim_disconnect")();
    setLevel("other", 3);
    EXPECT_THAT(m_calls, ElementsAre(std::to_string(own.first) + " 2", std::to_string(other.first) + " 1",
                                     "disconnected"));
    EXPECT_EQ(logger("other").second, 3U);
}

} // namespace simulation::tests
