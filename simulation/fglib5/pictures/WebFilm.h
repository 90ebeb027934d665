// SPDX-License-Identifier: MIT
/// \file
/// The film of a line camera: an endless moving cloth with occasional faults.
#pragma once

#include "pictures/Film.h"

namespace simulation {

/// A scrolling film. \p firstColumn and \p width are the region on a sensor of \p sensorWidth pixels;
/// \p brightness as in SceneView.
std::shared_ptr<const Film> webFilm(int sensorWidth, int firstColumn, int width, double brightness,
                                    bool reverseX);

} // namespace simulation
