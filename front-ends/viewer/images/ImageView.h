// SPDX-License-Identifier: MIT
/// \file
/// ImageView: the part of an image that a browser shows, reduced to the pixels it can use.
#pragma once

#include "images/ImageMailbox.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ovra::viewer {

/// A rectangle of an image, in its pixels.
struct Region
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const Region&, const Region&) = default;
};

/// What is cut out of an image: squares of binning x binning pixels, each of which becomes one pixel. At the
/// image's right and lower edge they may be cut off.
struct ImageView
{
    Region region;
    int binning = 1;
    int width = 0; ///< of the result
    int height = 0;
    friend bool operator==(const ImageView&, const ImageView&) = default;
};

/// The view of \p wanted on a screen area of \p screenWidth x \p screenHeight pixels. Binning is the largest
/// that leaves at least as many pixels as the area has, so the result has less than four times as many. The
/// region is widened to whole squares and clipped to the image; a region without pixels in the image gives an
/// empty view.
ImageView fitView(const Region& wanted, int screenWidth, int screenHeight, int imageWidth, int imageHeight);

std::size_t sizeInBytes(const ImageView& view, const PixelLayout& layout);

/// Writes the view's pixels, each the mean of its square, in the image's own layout. \p view comes from
/// fitView with the frame's size; \p target has sizeInBytes.
void copyView(const Frame& frame, const ImageView& view, std::uint8_t* target);

/// One pixel's samples; empty outside of the image.
std::vector<unsigned> pixelAt(const Frame& frame, int x, int y);

} // namespace ovra::viewer
