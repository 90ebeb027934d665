// SPDX-License-Identifier: MIT
/// \file
/// Texts about ports, acquisition, images and memory.
#pragma once

#include "Fields.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ovra::core::models {
class HlEnvironmentLogicalPortNode;
}

namespace ovra::console {

/// The connector that a logical port is mapped to.
std::string connectorText(const core::models::HlEnvironmentLogicalPortNode& port);
/// The camera at that connector; empty if there is none.
std::string cameraText(const core::models::HlEnvironmentLogicalPortNode& port);

/// The channels and cameras that acquire: "board 0 DMA 1", "camera of board 0 port 1".
std::vector<std::string> acquiring();
/// "1 image", "2 images".
std::string imagesText(std::int64_t count);
/// Memory of all DMA buffers, and its limit.
std::string memoryText();
Fields memoryFields();

} // namespace ovra::console
