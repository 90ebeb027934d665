// SPDX-License-Identifier: MIT
/// \file
/// The results of a run, for people and for programs.
#pragma once

#include <iosfwd>
#include <set>
#include <string>
#include <vector>

namespace ovra::conformance {

struct Result
{
    std::string test;
    std::string requirement;
    std::string result; ///< "passed", "failed", "crashed", "skipped" or "slow"
    double seconds = 0;
    std::string message; ///< what the test printed

    bool good() const { return result == "passed" || result == "skipped"; }
};

struct Report
{
    std::string host;
    std::vector<Result> results;

    bool good() const;
};

void writeLine(std::ostream& stream, const Result& result);
/// Writes the number of tests with each result.
void writeTotals(std::ostream& stream, const Report& report);
/// Creates \p file if it does not exist, and does not change it otherwise.
/// \throws std::runtime_error  that names the file
void requireWritable(const std::string& file);
/// \throws std::runtime_error  that names the file
void writeJson(const std::string& file, const Report& report);
/// Names of the tests in a JSON report that neither passed nor were skipped.
/// \throws std::runtime_error  that names the file
std::set<std::string> readFailed(const std::string& file);

} // namespace ovra::conformance
