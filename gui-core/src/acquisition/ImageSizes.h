// SPDX-License-Identifier: MIT
/// \file
/// Brings the image sizes of cameras and DMA channels together before an acquisition starts.
#pragma once

namespace ovra::gui::acquisition {

struct ResourceFilter;

/// Compares every DMA channel that \p filter accepts with every logical port of its board and process. Where
/// camera and display differ, the remembered answer, or else the user, decides which side is adjusted. A
/// camera height of 1 (a line-scan camera) matches any display height. Pairs without a camera or a display,
/// and ports whose generator is on, are skipped.
///
/// GUI thread; may show modal questions.
void reconcileImageSizes(const ResourceFilter& filter);

} // namespace ovra::gui::acquisition
