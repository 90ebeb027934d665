// SPDX-License-Identifier: MIT
#include "Report.h"

#include <boost/nowide/utf/convert.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace ovra::conformance {

namespace {

constexpr const char* RESULTS[] = {"passed", "failed", "crashed", "skipped", "slow"};

std::filesystem::path pathOf(const std::string& name)
{
    return {std::u8string(name.begin(), name.end())};
}

/// A test may print text that is not UTF-8; it is read as Latin-1.
std::string quoted(const std::string& text)
{
    const bool utf8 =
        text == boost::nowide::utf::convert_string<char>(text.data(), text.data() + text.size());
    std::ostringstream json;
    json << '"' << std::hex << std::setfill('0');
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\')
            json << '\\' << letter;
        else if (code < 0x20 || (code > 0x7f && !utf8))
            json << "\\u" << std::setw(4) << unsigned{code};
        else
            json << letter;
    }
    json << '"';
    return json.str();
}

} // namespace

bool Report::good() const
{
    return std::ranges::all_of(results, &Result::good);
}

void writeLine(std::ostream& stream, const Result& result)
{
    constexpr int RESULT_COLUMN = 9, TEST_COLUMN = 52;
    stream << std::left << std::setw(RESULT_COLUMN) << result.result << std::setw(TEST_COLUMN) << result.test
           << std::right << std::fixed << std::setprecision(2) << result.seconds << " s\n";
    std::istringstream message(result.message);
    for (std::string line; std::getline(message, line);)
        stream << std::string(RESULT_COLUMN, ' ') << line << '\n';
    stream.flush();
}

void writeTotals(std::ostream& stream, const Report& report)
{
    const std::size_t count = report.results.size();
    stream << count << (count == 1 ? " test:" : " tests:");
    const char* separator = " ";
    for (const std::string result : RESULTS) {
        stream << separator << std::ranges::count(report.results, result, &Result::result) << ' ' << result;
        separator = ", ";
    }
    stream << std::endl;
}

void requireWritable(const std::string& name)
{
    if (!std::ofstream(pathOf(name), std::ios::app))
        throw std::runtime_error(name + ": cannot be written");
}

void writeJson(const std::string& name, const Report& report)
{
    std::ofstream file(pathOf(name), std::ios::binary);
    file << "{\n  \"host\": " << quoted(report.host) << ",\n  \"tests\": [";
    const char* separator = "\n";
    for (const auto& result : report.results) {
        file << separator << "    {\"name\": " << quoted(result.test)
             << ", \"requirement\": " << quoted(result.requirement)
             << ", \"result\": " << quoted(result.result) << ", \"seconds\": " << result.seconds
             << ", \"message\": " << quoted(result.message) << '}';
        separator = ",\n";
    }
    file << "\n  ]\n}\n";
    if (!file.flush())
        throw std::runtime_error(name + ": cannot be written");
}

std::set<std::string> readFailed(const std::string& name)
{
    std::set<std::string> failed;
    try {
        std::ifstream file(pathOf(name), std::ios::binary);
        boost::property_tree::ptree report;
        boost::property_tree::read_json(file, report);
        for (const auto& [key, test] : report.get_child("tests")) {
            const Result result{.test = test.get<std::string>("name"),
                                .requirement = {},
                                .result = test.get<std::string>("result"),
                                .message = {}};
            if (!result.good())
                failed.insert(result.test);
        }
    } catch (const std::exception& error) {
        throw std::runtime_error(name + ": is no report of this program: " + error.what());
    }
    return failed;
}

} // namespace ovra::conformance
