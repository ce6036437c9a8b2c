#include <png.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "player/common/picture.h"

namespace player {
namespace {

// libpng's one-call interface; frees what it holds when it goes.
struct Image {
    png_image image{};
    Image() { image.version = PNG_IMAGE_VERSION; }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
    ~Image() { png_image_free(&image); }

    [[noreturn]] void fail(const std::string& path) const {
        throw std::runtime_error(path + ": " + image.message);
    }
};

void read_indexed(Image& png, const std::string& path, Picture& picture) {
    png.image.format = PNG_FORMAT_RGBA_COLORMAP;
    picture.indices.resize(picture.pixels.size());
    std::array<std::uint8_t, 4 * 256> colours{};
    if (!png_image_finish_read(&png.image, nullptr, picture.indices.data(), 0, colours.data()))
        png.fail(path);
    for (std::size_t i = 0; i < picture.palette.size(); ++i) {
        const std::uint8_t* c = &colours[4 * i];
        const bool present = i < png.image.colormap_entries;
        picture.palette[i] = present ? Rgba{c[0], c[1], c[2], c[3]} : Rgba{0, 0, 0, 255};
    }
    std::transform(picture.indices.begin(), picture.indices.end(), picture.pixels.begin(),
                   [&](std::uint8_t index) { return picture.palette[index]; });
}

}  // namespace

Picture read_png(const std::string& path) {
    Image png;
    if (!png_image_begin_read_from_file(&png.image, path.c_str())) png.fail(path);
    constexpr png_uint_32 limit = 1 << 15;
    if (png.image.width > limit || png.image.height > limit)
        throw std::runtime_error(path + ": wider or higher than 32768 pixels");

    Picture picture(static_cast<int>(png.image.width), static_cast<int>(png.image.height));
    const bool alpha = (png.image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    if (png.image.format & PNG_FORMAT_FLAG_COLORMAP) {
        read_indexed(png, path, picture);
    } else {
        png.image.format = PNG_FORMAT_RGBA;
        if (!png_image_finish_read(&png.image, nullptr, picture.pixels.data(), 0, nullptr)) png.fail(path);
    }
    picture.has_alpha = alpha;
    return picture;
}

void write_png(const std::string& path, const Picture& picture) {
    if (picture.width < 1 || picture.height < 1) throw std::runtime_error(path + ": the picture is empty");
    Image png;
    png.image.width = static_cast<png_uint_32>(picture.width);
    png.image.height = static_cast<png_uint_32>(picture.height);
    const void* data = picture.pixels.data();
    const void* colours = nullptr;
    std::vector<std::uint8_t> rgb;
    if (picture.indexed()) {
        png.image.format = PNG_FORMAT_RGBA_COLORMAP;
        png.image.colormap_entries = 256;
        data = picture.indices.data();
        colours = picture.palette.data();
    } else if (picture.has_alpha) {
        png.image.format = PNG_FORMAT_RGBA;
    } else {
        png.image.format = PNG_FORMAT_RGB;
        rgb.reserve(picture.pixels.size() * 3);
        for (const Rgba& p : picture.pixels) rgb.insert(rgb.end(), {p.r, p.g, p.b});
        data = rgb.data();
    }
    // Games have few colours in long runs, so the fast setting costs little room and saves most of the time.
    png.image.flags |= PNG_IMAGE_FLAG_FAST;
    if (!png_image_write_to_file(&png.image, path.c_str(), 0, data, 0, colours)) png.fail(path);
}

}  // namespace player
