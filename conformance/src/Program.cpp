// SPDX-License-Identifier: MIT
#include "conformance/Program.h"

#include "ChildProcess.h"
#include "ExitCodes.h"
#include "Options.h"
#include "Report.h"
#include "gui-core/Version.h"

#include <boost/dll/runtime_symbol_info.hpp>

#include <algorithm>
#include <fstream>
#include <future>
#include <iostream>
#include <iterator>
#include <random>
#include <semaphore>
#include <stdexcept>
#include <system_error>

namespace ovra::conformance {

namespace {

/// The file for the tests' output; removed by the destructor.
class PrintedText
{
public:
    PrintedText()
    {
        if (!std::ofstream(m_file))
            throw std::runtime_error(m_file.string() + ": cannot be written");
    }
    ~PrintedText()
    {
        std::error_code ignored;
        std::filesystem::remove(m_file, ignored);
    }
    PrintedText(const PrintedText&) = delete;
    PrintedText& operator=(const PrintedText&) = delete;
    const std::filesystem::path& file() const { return m_file; }
    std::string read() const
    {
        std::ifstream stream(m_file, std::ios::binary);
        std::string text{std::istreambuf_iterator<char>(stream), {}};
        std::erase(text, '\r');
        return text;
    }

private:
    const std::filesystem::path m_file = std::filesystem::temp_directory_path() /
                                         ("ovra-conformance-" + std::to_string(std::random_device{}()));
};

std::string resultOf(const ChildResult& child)
{
    if (child.ending == Ending::Overdue)
        return "slow";
    if (child.ending == Ending::Exited && child.code == PASSED)
        return "passed";
    if (child.ending == Ending::Exited && child.code == FAILED)
        return "failed";
    if (child.ending == Ending::Exited && child.code == SKIPPED)
        return "skipped";
    return "crashed";
}

std::string endingText(const ChildResult& child)
{
    return (child.ending == Ending::Terminated ? "signal " : "exit code ") + std::to_string(child.code) +
           '\n';
}

Result runInOwnProcess(const Test& test, std::chrono::seconds limit)
{
    using namespace std::chrono;
    const PrintedText printed;
    const auto start = steady_clock::now();
    const ChildResult child =
        runChild(boost::dll::program_location(), {"--run", test.name}, printed.file(), limit);
    Result result{.test = test.name,
                  .requirement = test.requirement,
                  .result = resultOf(child),
                  .seconds = duration<double>(steady_clock::now() - start).count(),
                  .message = printed.read()};
    if (!result.good())
        result.message.insert(0, test.requirement + ".\n");
    if (result.result == "crashed")
        result.message += endingText(child);
    return result;
}

int runHere(const std::string& name, const HostMaker& makeHost, const std::vector<Test>& tests)
{
    const auto test = std::ranges::find(tests, name, &Test::name);
    if (test == tests.end())
        throw std::invalid_argument("--run: no test has the name \"" + name + '"');
    try {
        const auto host = makeHost();
        test->run(*host);
    } catch (const std::exception& error) {
        fail(std::string("unexpected exception: ") + error.what());
    }
    return PASSED;
}

void list(const std::vector<Test>& tests)
{
    for (const auto& test : tests)
        std::cout << test.name << "\n    " << test.requirement << ".\n";
}

struct Release
{
    std::counting_semaphore<>& semaphore;
    ~Release() { semaphore.release(); }
};

int runAll(const Options& options, const HostMaker& makeHost, const std::vector<Test>& tests)
{
    if (!options.json.empty())
        requireWritable(options.json);
    Report report{makeHost()->name(), {}};
    std::cout << "Host: " << report.host << std::endl;
    std::counting_semaphore jobs(options.jobs);
    std::vector<std::future<Result>> results;
    for (const auto& test : tests)
        results.push_back(std::async(std::launch::async, [&] {
            jobs.acquire();
            const Release atEnd{jobs};
            return runInOwnProcess(test, options.timeLimit);
        }));
    for (auto& result : results) {
        report.results.push_back(result.get());
        writeLine(std::cout, report.results.back());
    }
    writeTotals(std::cout, report);
    if (!options.json.empty())
        writeJson(options.json, report);
    return report.good() ? 0 : 1;
}

/// A process that runs one test finds it by its name.
void requireDifferentNames(const std::vector<Test>& tests)
{
    for (const auto& test : tests)
        if (std::ranges::count(tests, test.name, &Test::name) > 1)
            throw std::invalid_argument("two tests have the name \"" + test.name + '"');
}

int run(const Options& options, const HostMaker& makeHost, const std::vector<Test>& tests)
{
    requireDifferentNames(tests);
    if (!options.run.empty())
        return runHere(options.run, makeHost, tests);
    if (options.version) {
        std::cout << "Conformance tests of ovra-lib-gui-core " OVRA_GUI_CORE_VERSION "\n";
        return 0;
    }
    if (options.help) {
        std::cout << helpText();
        return 0;
    }
    const auto chosen = chosenTests(options, tests);
    if (!options.list)
        return runAll(options, makeHost, chosen);
    list(chosen);
    return 0;
}

} // namespace

int runProgram(int argc, char** argv, const HostMaker& makeHost, const std::vector<Test>& tests)
{
    try {
        return run(parseOptions(argc, argv), makeHost, tests);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 2;
    }
}

} // namespace ovra::conformance
