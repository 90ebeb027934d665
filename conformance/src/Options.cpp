// SPDX-License-Identifier: MIT
#include "Options.h"

#include "Report.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <stdexcept>

namespace ovra::conformance {

namespace {

// In milliseconds, the unit of Windows' wait functions, it fits into 32 bits.
constexpr int MAX_SECONDS = 24 * 3600;
constexpr int MAX_JOBS = 256;

int parseNumber(const std::string& option, const std::string& text, int most)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < 1 || number > most)
        throw std::invalid_argument(option + ": expected a number from 1 to " + std::to_string(most) +
                                    ", found \"" + text + '"');
    return number;
}

/// "*" in \p pattern stands for any text.
bool fits(const char* pattern, const char* name)
{
    if (*pattern == '*')
        return fits(pattern + 1, name) || (*name && fits(pattern, name + 1));
    return *pattern == *name && (!*pattern || fits(pattern + 1, name + 1));
}

bool fitsAny(const std::vector<std::string>& patterns, const std::string& name)
{
    return std::ranges::any_of(
        patterns, [&](const std::string& pattern) { return fits(pattern.c_str(), name.c_str()); });
}

void requireFits(const std::vector<std::string>& patterns, const std::vector<Test>& tests)
{
    for (const auto& pattern : patterns)
        if (std::ranges::none_of(tests, [&](const Test& test) { return fitsAny({pattern}, test.name); }))
            throw std::invalid_argument("no test has the name \"" + pattern + '"');
}

} // namespace

std::string helpText()
{
    return R"(Tests whether a host is one on which the library works.

    --list               names of the chosen tests with their requirements; runs none
    --include PATTERN    chooses tests by name, * for any text; may be repeated
    --exclude PATTERN    takes tests off the choice; may be repeated
    --only-failed FILE   those that neither passed nor were skipped in the report FILE of an earlier run
    --json FILE          writes a report as JSON, too
    --time-limit SECONDS how long a test may take; 60
    --jobs NUMBER        tests that run at a time; 1
    --version
    --help

Each test runs in a process of its own. Its result is
    passed    the host meets the requirement
    failed    it does not; the reason is shown
    crashed   the process ended by itself
    skipped   the host does not offer what the test needs
    slow      the process was ended after the time limit
Exit code: 0 when each test passed or was skipped, 1 when one did not, 2 for wrong
arguments, a report that cannot be written, or two tests with one name.
)";
}

Options parseOptions(int argc, char** argv)
{
    Options options;
    const std::map<std::string, std::function<void(const std::string&)>> withValue = {
        {"--include", [&](const std::string& value) { options.include.push_back(value); }},
        {"--exclude", [&](const std::string& value) { options.exclude.push_back(value); }},
        {"--only-failed", [&](const std::string& value) { options.onlyFailed = value; }},
        {"--json", [&](const std::string& value) { options.json = value; }},
        {"--time-limit",
         [&](const std::string& value) {
             options.timeLimit = std::chrono::seconds(parseNumber("--time-limit", value, MAX_SECONDS));
         }},
        {"--jobs", [&](const std::string& value) { options.jobs = parseNumber("--jobs", value, MAX_JOBS); }},
        {"--run", [&](const std::string& value) { options.run = value; }},
    };
    const std::map<std::string, bool Options::*> switches = {
        {"--help", &Options::help}, {"--version", &Options::version}, {"--list", &Options::list}};
    for (int index = 1; index < argc; ++index) {
        const std::string name = argv[index];
        if (const auto flag = switches.find(name); flag != switches.end()) {
            options.*flag->second = true;
            continue;
        }
        const auto option = withValue.find(name);
        if (option == withValue.end())
            throw std::invalid_argument("unknown argument \"" + name + "\" (--help lists the known ones)");
        if (++index == argc || !*argv[index])
            throw std::invalid_argument(name + ": a value is missing");
        option->second(argv[index]);
    }
    return options;
}

std::vector<Test> chosenTests(const Options& options, const std::vector<Test>& tests)
{
    requireFits(options.include, tests);
    requireFits(options.exclude, tests);
    const auto failed = options.onlyFailed.empty() ? std::set<std::string>() : readFailed(options.onlyFailed);
    std::vector<Test> chosen;
    for (const auto& test : tests) {
        const bool included = options.include.empty() || fitsAny(options.include, test.name);
        const bool wanted = options.onlyFailed.empty() || failed.contains(test.name);
        if (included && wanted && !fitsAny(options.exclude, test.name))
            chosen.push_back(test);
    }
    const bool nothingFailed = !options.onlyFailed.empty() && failed.empty();
    if (chosen.empty() && !nothingFailed)
        throw std::invalid_argument("the arguments choose no test");
    return chosen;
}

} // namespace ovra::conformance
