// SPDX-License-Identifier: MIT
/// \file
/// Finds boards and applet files in the environment model.
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
class HlEnvironmentFileNode;
class HlEnvironmentRootNode;
} // namespace ovra::core::models

namespace ovra::gui::model {

boost::shared_ptr<core::models::HlEnvironmentRootNode> environmentRoot();

/// Empty when no board of the source "ovra" has this serial.
boost::shared_ptr<core::models::HlEnvironmentBoardNode> findBoard(unsigned int serial);

/// Empty when the environment knows no file under this path.
boost::shared_ptr<core::models::HlEnvironmentFileNode> findAppletFile(const std::string& path);

} // namespace ovra::gui::model
