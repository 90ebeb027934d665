/// \file
/// What a line camera sees: cloth that runs by without end, with a fault now and then.
#pragma once

#include "pictures/Film.h"

namespace simulation {

/// Scrolls. \p firstColumn and \p width are the part of a sensor of \p sensorWidth pixels; \p brightness as
/// of SceneView.
std::shared_ptr<const Film> webFilm(int sensorWidth, int firstColumn, int width, double brightness,
                                    bool reverseX);

} // namespace simulation
