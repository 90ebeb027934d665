// SPDX-License-Identifier: MIT
// Tests of the application: configuration, log, and starts of the libraries.

#include "Commands.h"
#include "Tests.h"

#include "conformance/HostUnderTest.h"

#include "ovra-core/EntryPoints.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/PluginManager.h"
#include "ovra-lib-display-fglib/EntryPoints.h"
#include "ovra-lib-display/EntryPoints.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-fglib-model/EntryPoints.h"
#include "ovra-lib-genicam-model/EntryPoints.h"
#include "ovra-lib-parameters/EntryPoints.h"
#include "ovra_log/OvraLog.h"

#include <filesystem>
#include <future>
#include <memory>
#include <mutex>

namespace ovra::conformance {

namespace {

using core::HarloApplication;

void configurationEntryHasADefault(HostUnderTest& host)
{
    host.startApplication();
    for (const long long value : {7LL, -1LL, 9'000'000'000LL})
        requireEqual(HarloApplication::getConfigIntEntry("conformance.no-such-entry", value), value,
                     "an entry that does not exist");
}

void configurationEntryIsKept(HostUnderTest& host)
{
    host.startApplication();
    for (const int value : {1, -3, 0}) {
        HarloApplication::setConfigEntry("conformance.entry", value);
        requireEqual(HarloApplication::getConfigIntEntry("conformance.entry", 77), value,
                     "an entry that was set");
    }
}

void runtimeDirectoryIsThere(HostUnderTest& host)
{
    host.startApplication();
    const std::string name = HarloApplication::getRuntimeDirectory();
    require(!name.empty() && name.back() != '/' && name.back() != '\\',
            "a runtime directory without a closing separator, found \"" + name + '"');
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    require(std::filesystem::is_directory(path / "bin"), "a folder \"bin\" below " + name);
}

void pluginMonitorStartsAndStops(HostUnderTest& host)
{
    host.startApplication();
    const auto plugins = HarloApplication::pluginmanager();
    require(static_cast<bool>(plugins), "an application with a plug-in manager");
    plugins->startMonitor();
    plugins->stopMonitor();
}

// --- log -----------------------------------------------------------------------------------------------

/// Listens to the log. Never destroyed: a faulty host may call it at any time.
struct Listener
{
    std::mutex mutex;
    std::vector<std::string> texts;
    std::function<void()> inCall;

    static void take(unsigned long, unsigned long, const char*, unsigned int, const char* text, unsigned int,
                     const tOvraLogTag*, void* userData)
    {
        auto& self = *static_cast<Listener*>(userData);
        if (self.inCall)
            self.inCall();
        const std::lock_guard lock(self.mutex);
        self.texts.push_back(text);
    }
    bool heard(const std::string& text)
    {
        const std::lock_guard lock(mutex);
        for (const auto& each : texts)
            if (each.find(text) != std::string::npos)
                return true;
        return false;
    }
};

Listener& startedListener(HostUnderTest& host)
{
    host.startApplication();
    static auto* listener = new Listener; // each test has its own process
    OvraLogInit();
    OvraLogSetMessageCallback(Listener::take, listener);
    return *listener;
}

void stopListening()
{
    OvraLogSetMessageCallback(nullptr, nullptr);
    OvraLogDeinit();
}

void logCallbackHearsMessages(HostUnderTest& host)
{
    Listener& listener = startedListener(host);
    host.logMessage("first message");
    await(
        host, [&] { return listener.heard("first message"); }, "the log callback to be called");
    stopListening();
}

void logCallbackTakenOffIsNotCalled(HostUnderTest& host)
{
    Listener& listener = startedListener(host);
    OvraLogSetMessageCallback(nullptr, nullptr);
    host.logMessage("late message");
    stays(
        host, [&] { return !listener.heard("late message"); },
        "no call of a log callback that was taken off");
    OvraLogDeinit();
}

void logCallbackMayBeTakenOffDuringACall(HostUnderTest& host)
{
    Listener& listener = startedListener(host);
    auto entered = std::make_shared<std::promise<void>>(), go = std::make_shared<std::promise<void>>();
    listener.inCall = [=, first = std::make_shared<std::once_flag>()] {
        std::call_once(*first, [&] {
            entered->set_value();
            go->get_future().wait();
        });
    };
    auto logging = std::async(std::launch::async, [&] { host.logMessage("held message"); });
    if (entered->get_future().wait_for(PATIENCE) != std::future_status::ready)
        fail("Waited in vain for the log callback to be called");
    auto taken = std::async(std::launch::async, [] { OvraLogSetMessageCallback(nullptr, nullptr); });
    const bool returned = taken.wait_for(LOOK_ON) == std::future_status::ready;
    require(!returned, "taking the log callback off waits for the call that is under way on another thread");
    go->set_value();
    taken.get();
    logging.get();
    OvraLogDeinit();
}

void logIsStartedAsOftenAsItIsStopped(HostUnderTest& host)
{
    Listener& listener = startedListener(host);
    OvraLogInit();
    OvraLogDeinit();
    host.logMessage("after one of two stops");
    await(
        host, [&] { return listener.heard("after one of two stops"); },
        "a message after one stop for two starts");
    stopListening();
}

// --- libraries -------------------------------------------------------------------------------------------

struct Library
{
    const char* name;
    void (*start)();
    void (*stop)();
};
// Not constexpr: under Microsoft's ABI the address of an imported function is known at run time only.
const Library LIBRARIES[] = {
    {"ovra-core", OvraCoreInit, OvraCoreDeinit},
    {"ovra-lib-environment", OvraEnvironmentInit, OvraEnvironmentDeinit},
    {"ovra-lib-parameters", OvraParametersInit, OvraParametersDeinit},
    {"ovra-lib-display", OvraDisplayInit, OvraDisplayDeinit},
    {"ovra-lib-display-fglib", OvraDisplayFglibInit, OvraDisplayFglibDeinit},
    {"ovra-lib-fglib-model", OvraFglibModelInit, OvraFglibModelDeinit},
    {"ovra-lib-genicam-model", OvraGenicamModelInit, OvraGenicamModelDeinit},
};

void startsOfLibrariesAreCounted(HostUnderTest& host)
{
    host.startApplication();
    for (const auto& [name, start, stop] : LIBRARIES) {
        const int before = host.libraryUses(name);
        const auto requireUses = [&, library = std::string(name)](int more, const char* when) {
            requireEqual(host.libraryUses(library), before + more, "uses of " + library + " after " + when);
        };
        start();
        start();
        requireUses(2, "two starts");
        stop();
        requireUses(1, "two starts and a stop");
        stop();
        requireUses(0, "two starts and two stops");
    }
}

void commandsRunAfterOneOfTwoStops(HostUnderTest& host)
{
    CommandBench bench(host);
    for (const auto& library : LIBRARIES) {
        library.start();
        library.start();
        library.stop();
    }
    bench.submit(bench.make("command", core::Command::Asynchronous));
    bench.awaitNote("command post");
    for (const auto& library : LIBRARIES)
        library.stop();
}

} // namespace

std::vector<Test> applicationTests()
{
    return {
        {"configuration-entry-has-a-default",
         "An entry that does not exist has the default that is asked with", configurationEntryHasADefault},
        {"configuration-entry-is-kept", "An entry has the value that was set last", configurationEntryIsKept},
        {"runtime-directory-is-there",
         "The runtime directory has no closing separator, and \"bin\" lies below it",
         runtimeDirectoryIsThere},
        {"plugin-monitor-starts-and-stops", "The plug-in manager's monitor can be started and stopped",
         pluginMonitorStartsAndStops},
        {"log-callback-hears-messages", "The log callback is called for each message",
         logCallbackHearsMessages},
        {"log-callback-taken-off-is-not-called", "A log callback that was taken off is not called any more",
         logCallbackTakenOffIsNotCalled},
        {"log-callback-is-not-running-once-taken-off",
         "Taking the log callback off waits for a call on another thread",
         logCallbackMayBeTakenOffDuringACall},
        {"log-starts-are-counted", "The log ends with the last stop", logIsStartedAsOftenAsItIsStopped},
        {"library-starts-are-counted", "Each host library ends with the last stop",
         startsOfLibrariesAreCounted},
        {"application-survives-one-of-two-stops", "Libraries that are still in use serve the application",
         commandsRunAfterOneOfTwoStops},
    };
}

} // namespace ovra::conformance
