// SPDX-License-Identifier: MIT
/// \file
/// Films from PNG files.
#pragma once

#include "pictures/Film.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace simulation {

/// A camera's view of stored pictures.
struct ReplayView
{
    std::vector<std::filesystem::path> files;
    Window window; ///< in each picture; pixels outside the picture are black
    double brightness = 1;
    bool reverseX = false;
    bool reverseY = false;

    bool operator==(const ReplayView&) const = default;
};

/// Width and height of a PNG file's picture; none for other files.
std::optional<std::pair<int, int>> pictureSize(const std::filesystem::path& file);

/// Reads each file when its picture is first needed. A file that cannot be read gives a black picture.
std::shared_ptr<const Film> replayFilm(const ReplayView& view);

} // namespace simulation
