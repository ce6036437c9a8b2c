// Animated PNG (APNG): a PNG whose further pictures follow the first in chunks of their own.
// Source: https://www.w3.org/TR/png-3/ (acTL, fcTL, fdAT)
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "player/common/pacer.h"
#include "player/common/placement.h"
#include "player/output/film.h"

namespace player {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put32(Bytes& bytes, std::uint32_t value) {
    for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}
void put16(Bytes& bytes, int value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value));
}
std::uint32_t get32(const std::uint8_t* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 | at[3];
}

constexpr std::size_t signature_length = 8;
constexpr std::size_t chunk_frame = 12;  // length and type before the data, checksum behind

Bytes chunk(const char* type, const Bytes& data) {
    Bytes bytes;
    put32(bytes, static_cast<std::uint32_t>(data.size()));
    bytes.insert(bytes.end(), type, type + 4);
    bytes.insert(bytes.end(), data.begin(), data.end());
    put32(bytes, static_cast<std::uint32_t>(crc32(0, bytes.data() + 4, static_cast<uInt>(bytes.size() - 4))));
    return bytes;
}

// A part of a picture as libpng packs it, as a PNG in memory.
Bytes packed(const Picture& picture, const Area& part) {
    Bytes rgb;
    rgb.reserve(static_cast<std::size_t>(3 * part.width * part.height));
    for (int y = part.y; y < part.y + part.height; ++y)
        for (int x = part.x; x < part.x + part.width; ++x) {
            const Rgba& p = picture.at(x, y);
            rgb.insert(rgb.end(), {p.r, p.g, p.b});
        }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(part.width);
    image.height = static_cast<png_uint_32>(part.height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    Bytes png(size);
    if (!png_image_write_to_memory(&image, png.data(), &size, 0, rgb.data(), 0, nullptr))
        throw std::runtime_error(image.message);
    png.resize(size);
    return png;
}

// The data of all chunks of a type, joined.
Bytes data_of(const Bytes& png, const char* type) {
    Bytes data;
    for (std::size_t at = signature_length; at + chunk_frame <= png.size();) {
        const std::size_t length = get32(&png[at]);
        const auto begin = png.begin() + static_cast<std::ptrdiff_t>(at + 8);
        if (std::memcmp(&png[at + 4], type, 4) == 0)
            data.insert(data.end(), begin, begin + static_cast<std::ptrdiff_t>(length));
        at += length + chunk_frame;
    }
    return data;
}

// The smallest part outside of which two pictures are alike; one pixel when they are alike altogether.
Area changed_part(const Picture& before, const Picture& after) {
    int left = after.width, top = after.height, right = -1, bottom = -1;
    for (int y = 0; y < after.height; ++y)
        for (int x = 0; x < after.width; ++x) {
            const Rgba &a = before.at(x, y), &b = after.at(x, y);
            if (a.r == b.r && a.g == b.g && a.b == b.b) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = y;
        }
    if (right < 0) return {0, 0, 1, 1};
    return {left, top, right - left + 1, bottom - top + 1};
}

class AnimatedPng final : public Film {
  public:
    AnimatedPng(const std::string& path, int width, int height)
        : path_(path), last_(width, height), file_(path, std::ios::binary | std::ios::trunc) {
        if (!file_) throw std::runtime_error(path + ": the file cannot be written");
    }

    void add(const Picture& picture) override {
        const Area all{0, 0, last_.width, last_.height};
        const bool first = pictures_ == 0;
        const Area part = first ? all : changed_part(last_, picture);
        const Bytes png = packed(picture, part);
        if (first) begin(png);
        ++pictures_;
        write(chunk("fcTL", control(part)));
        Bytes data = data_of(png, "IDAT");
        if (!first) {
            Bytes numbered;
            put32(numbered, sequence_++);
            numbered.insert(numbered.end(), data.begin(), data.end());
            data.swap(numbered);
        }
        write(chunk(first ? "IDAT" : "fdAT", data));
        last_ = picture;
    }

    void finish() override {
        write(chunk("IEND", {}));
        // How many pictures there are stands before the first of them.
        file_.seekp(static_cast<std::streamoff>(counted_at_));
        write(animation());
        file_.close();
        if (!file_) throw std::runtime_error(path_ + ": the film cannot be written");
    }

  private:
    void begin(const Bytes& png) {
        Bytes head(png.begin(), png.begin() + signature_length);
        const Bytes header = chunk("IHDR", data_of(png, "IHDR"));
        head.insert(head.end(), header.begin(), header.end());
        counted_at_ = head.size();
        write(head);
        write(animation());
    }

    [[nodiscard]] Bytes animation() const {
        Bytes data;
        put32(data, pictures_);
        put32(data, 0);  // played again and again
        return chunk("acTL", data);
    }

    // Where the next picture goes and how long it stays; what it does not cover stays as well.
    Bytes control(const Area& part) {
        Bytes data;
        put32(data, sequence_++);
        for (const int number : {part.width, part.height, part.x, part.y})
            put32(data, static_cast<std::uint32_t>(number));
        put16(data, 1);
        put16(data, static_cast<int>(frames_per_second));
        data.insert(data.end(), {0, 0});  // left in place afterwards; laid on, not blended
        return data;
    }

    void write(const Bytes& bytes) {
        file_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file_) throw std::runtime_error(path_ + ": the film cannot be written");
    }

    std::string path_;
    Picture last_;
    std::ofstream file_;
    std::size_t counted_at_ = 0;
    std::uint32_t pictures_ = 0;
    std::uint32_t sequence_ = 0;  // of the animation's chunks
};

}  // namespace

std::unique_ptr<Film> make_animated_png(const std::string& path, int width, int height) {
    return std::make_unique<AnimatedPng>(path, width, height);
}

}  // namespace player
