#include <png.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "player/common/new_file.h"
#include "player/common/picture.h"

namespace player {
namespace {

namespace fs = std::filesystem;

// libpng says of a folder, an empty and a truncated file alike that it cannot read.
std::string why_unreadable(const std::string& path, const std::string& message) {
    std::error_code error;
    if (fs::is_directory(path, error)) return "it is a folder";
    if (fs::is_regular_file(path, error)) {
        if (fs::file_size(path, error) == 0 && !error) return "the file is empty";
        if (message == "Read Error") return "the file is cut short";
    }
    return message;
}

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
    [[noreturn]] void fail_to_read(const std::string& path) const {
        throw std::runtime_error(path + ": " + why_unreadable(path, image.message));
    }
};

// A picture as libpng takes it.
struct Source : Image {
    const void* pixels = nullptr;
    const void* colours = nullptr;
    std::vector<std::uint8_t> rgb;

    explicit Source(const Picture& picture) : pixels(picture.pixels.data()) {
        image.width = static_cast<png_uint_32>(picture.width);
        image.height = static_cast<png_uint_32>(picture.height);
        if (picture.indexed()) {
            image.format = PNG_FORMAT_RGBA_COLORMAP;
            image.colormap_entries = 256;
            pixels = picture.indices.data();
            colours = picture.palette.data();
        } else if (picture.has_alpha) {
            image.format = PNG_FORMAT_RGBA;
        } else {
            image.format = PNG_FORMAT_RGB;
            rgb = rgb_bytes(picture);
            pixels = rgb.data();
        }
    }
};

void read_indexed(Image& png, const std::string& path, Picture& picture) {
    png.image.format = PNG_FORMAT_RGBA_COLORMAP;
    picture.indices.resize(picture.pixels.size());
    std::array<std::uint8_t, 4 * 256> colours{};
    if (!png_image_finish_read(&png.image, nullptr, picture.indices.data(), 0, colours.data()))
        png.fail_to_read(path);
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
    if (!png_image_begin_read_from_file(&png.image, path.c_str())) png.fail_to_read(path);
    constexpr png_uint_32 limit = 1 << 15;
    if (png.image.width > limit || png.image.height > limit)
        throw std::runtime_error(path + ": wider or higher than 32768 pixels");

    Picture picture(static_cast<int>(png.image.width), static_cast<int>(png.image.height));
    const bool alpha = (png.image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    if (png.image.format & PNG_FORMAT_FLAG_COLORMAP) {
        read_indexed(png, path, picture);
    } else {
        png.image.format = PNG_FORMAT_RGBA;
        if (!png_image_finish_read(&png.image, nullptr, picture.pixels.data(), 0, nullptr))
            png.fail_to_read(path);
    }
    picture.has_alpha = alpha;
    return picture;
}

void write_png(const std::string& path, const Picture& picture) {
    if (picture.width < 1 || picture.height < 1) throw std::runtime_error(path + ": the picture is empty");
    Source png(picture);
    NewFile file(path);
    // Games have few colours in long runs, so the fast setting costs little room and saves most of the time.
    png.image.flags |= PNG_IMAGE_FLAG_FAST;
    if (!png_image_write_to_stdio(&png.image, file.stream(), 0, png.pixels, 0, png.colours)) {
        if (std::ferror(file.stream())) throw std::runtime_error(path + ": " + std::strerror(errno));
        png.fail(path);
    }
    file.keep();
}

std::vector<std::uint8_t> packed_png(const Picture& picture) {
    Source png(picture);
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png.image);
    std::vector<std::uint8_t> bytes(size);
    if (!png_image_write_to_memory(&png.image, bytes.data(), &size, 0, png.pixels, 0, png.colours))
        throw std::runtime_error(png.image.message);
    bytes.resize(size);
    return bytes;
}

}  // namespace player
