// SPDX-License-Identifier: MIT
// A host without optional functions, and a test for each possible result.

#include "conformance/Program.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace {

using namespace ovra::conformance;

class BareHost final : public HostUnderTest
{
public:
    std::string name() const override { return "\"bare\"\n\\host"; }
    void startApplication() override {}
    void processEvents() override {}
};

void hang(HostUnderTest&)
{
    std::thread([] { fail("said by another thread"); }).detach(); // also ends the process
    for (;;)
        std::this_thread::yield();
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<Test> tests = {
        {"passes", "All is well",
         [](HostUnderTest& host) {
             require(std::cin.get() == EOF, "no input");
             stays(
                 host, [] { return true; }, "nothing");
         }},
        {"finds-another-value", "One is two",
         [](HostUnderTest&) {
             std::cout << "\xe4 is Latin-1\n";
             requireEqual(1, 2, "number");
         }},
        {"throws", "Nothing is thrown", [](HostUnderTest&) { throw std::runtime_error("no cable"); }},
        {"fails-elsewhere", "A thread may find the fault", hang},
        {"aborts", "The process goes on", [](HostUnderTest&) { std::abort(); }},
        {"is-not-offered", "There is a channel", [](HostUnderTest& host) { host.openChannel(); }},
        {"never-ends", "There is an end",
         [](HostUnderTest&) {
             std::cout << "begun\n" << std::flush;
             for (;;)
                 std::this_thread::sleep_for(std::chrono::seconds(1));
         }},
    };
    if (std::getenv("OVRA_TEST_NAMED_TWICE"))
        tests.push_back(tests.front());
    return runProgram(
        argc, argv, [] { return std::make_unique<BareHost>(); }, tests);
}
