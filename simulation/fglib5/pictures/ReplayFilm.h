/// \file
/// Films from PNG files.
#pragma once

#include "pictures/Film.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace simulation {

/// What a camera makes of stored pictures.
struct ReplayView
{
    std::vector<std::filesystem::path> files;
    Window window; ///< of each picture; what lies outside a picture is black
    double brightness = 1;
    bool reverseX = false;
    bool reverseY = false;

    bool operator==(const ReplayView&) const = default;
};

/// Width and height of a PNG file's picture; none for anything else.
std::optional<std::pair<int, int>> pictureSize(const std::filesystem::path& file);

/// Reads each file when its picture is first needed. One that cannot be read is black.
std::shared_ptr<const Film> replayFilm(const ReplayView& view);

} // namespace simulation
