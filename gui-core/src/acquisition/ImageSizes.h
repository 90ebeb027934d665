/// \file
/// Compares the image sizes of cameras and DMA channels before an acquisition starts.
#pragma once

namespace ovra::gui::commands {

struct ResourceFilter;

/// Compares every DMA channel that \p filter takes in with every logical port of its board and process. Where
/// camera and display differ, asks the user which side to adjust, unless an answer is remembered, and adjusts
/// it. A camera height of 1, a line-scan camera, fits any display height.
///
/// GUI thread; may show modal questions. Pairs that lack a camera or a display, or whose generator is on, are
/// skipped.
void reconcileImageSizes(const ResourceFilter& filter);

} // namespace ovra::gui::commands
