/// \file
/// A conformance test, and what its body says.
///
///   Test            a requirement with a name and the function that looks whether a host meets it
///   require, requireEqual, await, stays   what must hold
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
/// Each test has a process of its own, which ends at once where a requirement is not met: what the host left
/// running is not waited for.
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
    std::string name;        ///< kebab-case, unique; stays the same from version to version
    std::string requirement; ///< one sentence, present tense, without a full stop
    std::function<void(HostUnderTest&)> run;
};

/// All tests of this library, by subject.
std::vector<Test> standardTests();

/// How long await() waits. Less than the time limit of a test.
constexpr std::chrono::seconds PATIENCE{10};
/// How long stays() looks on. Several images of a channel arrive in this time.
constexpr std::chrono::milliseconds LOOK_ON{200};

/// Ends the test as failed. \p reason says what came instead of what.
[[noreturn]] void fail(const std::string& reason);
/// Ends the test as skipped.
[[noreturn]] void skip(const std::string& reason);

/// Fails with \p what, which says what should be, unless \p holds.
void require(bool holds, const std::string& what);

/// GUI thread. Processes events until \p condition holds; fails with \p what after PATIENCE.
void await(HostUnderTest& host, const std::function<bool()>& condition, const std::string& what);
/// GUI thread. Processes events for LOOK_ON; fails with \p what when \p condition ceases to hold.
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
