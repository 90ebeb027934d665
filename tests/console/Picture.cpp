#include "Picture.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace ovra::tests {

int Picture::greyValues() const
{
    return static_cast<int>(std::set<std::uint8_t>(pixels.begin(), pixels.end()).size());
}

Picture readPng(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    int width = 0, height = 0, components = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), static_cast<int>(bytes.size()),
                              &width, &height, &components, 0),
        stbi_image_free);
    if (!pixels || components != 1)
        throw std::runtime_error(file.string() + " is no grey PNG file");
    const auto size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, {pixels.get(), pixels.get() + size}};
}

} // namespace ovra::tests
