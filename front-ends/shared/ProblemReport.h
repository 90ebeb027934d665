/// \file
/// A text to attach to a problem report.
///
///   PrivateNames, withoutPrivateNames   what of a text does not leave the machine
///   ReportContents, problemReport       the report
#pragma once

#include "SessionOptions.h"

#include <string>
#include <vector>

namespace ovra::frontend {

/// Texts as they occur; empty ones are not looked for.
struct PrivateNames
{
    std::string installation; ///< its folder: paths in it stay, as "<installation>/..."
    std::string home;         ///< the user's folder
    std::string user;         ///< the user's name
};

/// \p text without these names: of a whole path outside the installation only the last part stays. Relative
/// paths stay, but for the user's name in them.
std::string withoutPrivateNames(const std::string& text, const PrivateNames& names);

/// What only the front end knows.
struct ReportContents
{
    std::string program; ///< "name version"
    SessionOptions options;
    std::vector<std::string> errors; ///< the last ones, the oldest first
    std::vector<std::string> log;
};

/// Versions, platform, machine, boards with structure and parameters, applet files, configuration entries,
/// and what the front end adds. Without user name and without paths outside the installation, unless \p
/// withPrivateNames. GUI thread, while an application runs.
std::string problemReport(const ReportContents& contents, bool withPrivateNames);

} // namespace ovra::frontend
