#include "tests/png.h"

#include "host/error.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#include <stb/stb_image_write.h>

namespace tests {

void write_png(const std::string& path, const host::Image& image) {
    static_assert(sizeof(host::Rgba) == 4);
    if (stbi_write_png(path.c_str(), image.width, image.height, 4, image.pixels.data(), 4 * image.width) == 0)
        throw host::Error("cannot write " + path);
}

}  // namespace tests
