// SPDX-License-Identifier: MIT
/// \file
/// A text to attach to a problem report.
///
///   PrivateNames, withoutPrivateNames   removes private names from a text
///   ReportContents, problemReport       the report
#pragma once

#include "SessionOptions.h"

#include <string>
#include <vector>

namespace ovra::frontend {

/// Names that are private. Empty ones are ignored.
struct PrivateNames
{
    std::string installation; ///< its folder: paths in it stay, as "<installation>/..."
    std::string home;         ///< the user's folder
    std::string user;         ///< the user's name
};

/// Removes these names from \p text. Of an absolute path outside the installation only the last part stays.
/// Relative paths stay, except for the user's name in them.
std::string withoutPrivateNames(const std::string& text, const PrivateNames& names);

/// Contents that only the front end knows.
struct ReportContents
{
    std::string program; ///< "name version"
    SessionOptions options;
    std::vector<std::string> errors; ///< the last ones, the oldest first
    std::vector<std::string> log;
};

/// Versions, platform, machine, boards with structure and parameters, applet files, configuration entries,
/// and the front end's contents. Leaves out the user's name and paths outside the installation, unless \p
/// withPrivateNames. GUI thread, while an application runs.
std::string problemReport(const ReportContents& contents, bool withPrivateNames);

} // namespace ovra::frontend
