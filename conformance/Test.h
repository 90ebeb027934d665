// SPDX-License-Identifier: MIT
/// \file
/// Test: a conformance test, and the functions for its body.
///
///   Test            a requirement with a name and the function that checks whether a host meets it
///   require, requireEqual, await, stays   check conditions
///   fail, skip      end the test
///   standardTests   the tests of everything that the library needs of its host
///
///     void clockAdvances(HostUnderTest& host)
///     {
///         host.startApplication();
///         await(host, [] { return ticks() > 3; }, "three ticks of the clock");
///     }
///     tests.push_back({"clock-advances", "The host's clock advances", clockAdvances});
///
/// Each test runs in a process of its own. If a requirement is not met, the process ends at once, without
/// waiting for the host's threads.
#pragma once

#include <chrono>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace ovra::conformance {

class HostUnderTest;

struct Test
{
    std::string name;        ///< kebab-case, unique; does not change between versions
    std::string requirement; ///< one sentence, present tense, without a full stop
    std::function<void(HostUnderTest&)> run;
};

/// All tests of this library, by subject.
std::vector<Test> standardTests();

/// Time limit of await(). Less than the time limit of a test.
constexpr std::chrono::seconds PATIENCE{10};
/// Time during which stays() checks its condition. A channel receives four images in this time.
constexpr std::chrono::milliseconds LOOK_ON{200};

/// Ends the test as failed. \p reason says what was expected and what happened.
[[noreturn]] void fail(const std::string& reason);
/// Ends the test as skipped.
[[noreturn]] void skip(const std::string& reason);

/// Fails unless \p holds. \p what says what was expected.
void require(bool holds, const std::string& what);

/// GUI thread. Processes events until \p condition holds; fails with \p what after PATIENCE.
void await(HostUnderTest& host, const std::function<bool()>& condition, const std::string& what);
/// GUI thread. Processes events for LOOK_ON; fails with \p what if \p condition becomes false.
void stays(HostUnderTest& host, const std::function<bool()>& condition, const std::string& what);

std::string toText(const std::vector<std::string>& values);
template <class Value>
std::string toText(const Value& value)
{
    std::ostringstream text;
    text << std::boolalpha << value;
    return text.str();
}

/// Fails unless \p actual equals \p expected; \p what names the value.
template <class Actual, class Expected>
void requireEqual(const Actual& actual, const Expected& expected, const std::string& what)
{
    if (!(actual == expected))
        fail(what + ": expected " + toText(expected) + ", found " + toText(actual));
}

} // namespace ovra::conformance
