// SPDX-License-Identifier: MIT
#include "conformance/Test.h"

#include "ExitCodes.h"

#include "conformance/HostUnderTest.h"

#include "ovra-lib-display/DisplayScene.h"

#include <cstdlib>
#include <iostream>
#include <thread>

namespace ovra::conformance {

namespace {

constexpr std::chrono::milliseconds STEP{1};

/// Ends the process without destructors, which could wait for ever for a thread of the host.
[[noreturn]] void end(const std::string& reason, int code)
{
    std::cout << reason << std::endl;
    std::_Exit(code);
}

/// Processes events until \p condition holds; false after \p limit.
bool pump(HostUnderTest& host, const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        host.processEvents();
        if (condition())
            return true;
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(STEP);
    }
}

} // namespace

void fail(const std::string& reason)
{
    end(reason, FAILED);
}

void skip(const std::string& reason)
{
    end(reason, SKIPPED);
}

void require(bool holds, const std::string& what)
{
    if (!holds)
        fail("Expected: " + what);
}

void await(HostUnderTest& host, const std::function<bool()>& condition, const std::string& what)
{
    if (!pump(host, condition, PATIENCE))
        fail("Waited in vain for " + what);
}

void stays(HostUnderTest& host, const std::function<bool()>& condition, const std::string& what)
{
    if (pump(
            host, [&] { return !condition(); }, LOOK_ON))
        fail("Expected: " + what);
}

std::string toText(const std::vector<std::string>& values)
{
    std::string text;
    for (const auto& value : values)
        text += (text.empty() ? "" : ", ") + value;
    return '[' + text + ']';
}

std::unique_ptr<ChannelUnderTest> HostUnderTest::openChannel()
{
    skip("The host does not offer a channel with images");
}

void HostUnderTest::observeHandle(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>&,
                                  std::function<void(Fg_Struct_s*)>)
{
    skip("The host does not offer to observe a board's handle");
}

std::unique_ptr<display::DisplaySceneVisualizer> HostUnderTest::makeVisualizer(std::function<void()>)
{
    skip("The host does not offer a visualizer");
}

void HostUnderTest::logMessage(const std::string&)
{
    skip("The host does not offer to write to its log");
}

int HostUnderTest::libraryUses(const std::string&)
{
    skip("The host does not count the starts of its libraries");
}

} // namespace ovra::conformance
