#include "PngWriter.h"

#include <cstddef>
#include <stdexcept>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace ovra::frontend {

namespace {

constexpr int GREY_COMPONENTS = 1;

void append(void* file, void* bytes, int count)
{
    static_cast<std::string*>(file)->append(static_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

} // namespace

std::string encodePng(const StoredImage& image)
{
    std::string file;
    if (stbi_write_png_to_func(append, &file, image.width, image.height, GREY_COMPONENTS, image.pixels.data(),
                               image.width) == 0)
        throw std::runtime_error("no PNG file of an image of " + std::to_string(image.width) + " x " +
                                 std::to_string(image.height) + " pixels");
    return file;
}

} // namespace ovra::frontend
