// SPDX-License-Identifier: MIT
#include "Picture.h"

#include <cstdlib>
#include <memory>
#include <numeric>
#include <set>
#include <stdexcept>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace ovra::tests {

std::size_t Picture::values() const
{
    return std::set(samples.begin(), samples.end()).size();
}

double Picture::mean() const
{
    return std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
}

Picture readPng(const std::string& bytes)
{
    Picture picture;
    const std::unique_ptr<stbi_uc, void (*)(void*)> samples(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), static_cast<int>(bytes.size()),
                              &picture.width, &picture.height, &picture.components, 0),
        stbi_image_free);
    if (!samples)
        throw std::runtime_error("no PNG file");
    picture.samples.assign(samples.get(), samples.get() + std::ptrdiff_t{picture.width} * picture.height *
                                                              picture.components);
    return picture;
}

double differenceOf(const Picture& left, const Picture& right)
{
    if (left.width != right.width || left.components != right.components ||
        left.samples.size() != right.samples.size())
        return 255;
    double sum = 0;
    for (std::size_t i = 0; i < left.samples.size(); ++i)
        sum += std::abs(left.samples[i] - right.samples[i]);
    return sum / static_cast<double>(left.samples.size());
}

} // namespace ovra::tests
