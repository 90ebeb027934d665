#include "PngWriter.h"

#include "Paths.h"

#include <fstream>
#include <ios>
#include <stdexcept>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace ovra::console {

namespace {

constexpr int GREY_COMPONENTS = 1;

void append(void* file, void* bytes, int count)
{
    static_cast<std::ofstream*>(file)->write(static_cast<const char*>(bytes), count);
}

} // namespace

void writePng(const std::filesystem::path& file, const StoredImage& image)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    const bool encoded =
        stream && stbi_write_png_to_func(append, &stream, image.width, image.height, GREY_COMPONENTS,
                                         image.pixels.data(), image.width) != 0;
    stream.close();
    if (!encoded || !stream)
        throw std::runtime_error("cannot write the picture " + textOf(file));
}

} // namespace ovra::console
