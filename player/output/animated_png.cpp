// Animated PNG (APNG): a PNG whose further pictures follow the first in chunks of their own.
// Source: https://www.w3.org/TR/png-3/ (acTL, fcTL, fdAT)
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
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
void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
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
    append(bytes, data);
    put32(bytes, static_cast<std::uint32_t>(crc32(0, bytes.data() + 4, static_cast<uInt>(bytes.size() - 4))));
    return bytes;
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
    AnimatedPng(std::FILE* file, int width, int height) : last_(width, height), file_(file) {}

    void add(const Picture& picture) override {
        const bool first = pictures_ == 0;
        const Area part = first ? Area{0, 0, last_.width, last_.height} : changed_part(last_, picture);
        const Bytes png = packed_png(cut_out(picture, part.x, part.y, part.width, part.height));
        if (first) begin(png);
        ++pictures_;
        write(chunk("fcTL", control(part)));
        Bytes data;
        if (!first) put32(data, sequence_++);
        append(data, data_of(png, "IDAT"));
        write(chunk(first ? "IDAT" : "fdAT", data));
        last_ = picture;
    }

    void finish() override {
        write(chunk("IEND", {}));
        // How many pictures there are stands before the first of them.
        if (std::fseek(file_, counted_at_, SEEK_SET) != 0) fail();
        write(animation());
    }

  private:
    void begin(const Bytes& png) {
        Bytes head(png.begin(), png.begin() + signature_length);
        append(head, chunk("IHDR", data_of(png, "IHDR")));
        counted_at_ = static_cast<long>(head.size());
        append(head, animation());
        append(head, chunk("sRGB", {0}));  // perceptual intent, as libpng says of stills
        write(head);
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
        append(data, {0, 0});  // left in place afterwards; laid on, not blended
        return data;
    }

    void write(const Bytes& bytes) {
        if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) fail();
    }
    [[noreturn]] static void fail() { throw std::runtime_error(std::strerror(errno)); }

    Picture last_;
    std::FILE* file_;
    long counted_at_ = 0;
    std::uint32_t pictures_ = 0;
    std::uint32_t sequence_ = 0;  // of the animation's chunks
};

}  // namespace

std::unique_ptr<Film> make_animated_png(std::FILE* file, int width, int height) {
    return std::make_unique<AnimatedPng>(file, width, height);
}

}  // namespace player
