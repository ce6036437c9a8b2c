#include "player/common/picture.h"

#include <algorithm>
#include <new>

namespace player {

Picture::Picture(int w, int h, Rgba fill) : host::Image{w, h, {}} {
    // A large screen, enlarged, may have more pixels than a size_t of 32 bits can count.
    if (std::int64_t{w} * h > static_cast<std::int64_t>(pixels.max_size())) throw std::bad_alloc();
    pixels.resize(place(0, h), fill);
}

void paste(Picture& target, const Picture& source, int x, int y) {
    for (int row = std::max(0, -y); row < source.height && y + row < target.height; ++row)
        for (int column = std::max(0, -x); column < source.width && x + column < target.width; ++column)
            target.at(x + column, y + row) = source.at(column, row);
}

Picture cut_out(const Picture& source, int x, int y, int w, int h) {
    Picture result(w, h);
    result.palette = source.palette;
    result.has_alpha = source.has_alpha;
    if (source.indexed()) result.indices.resize(result.pixels.size());
    for (int row = 0; row < h; ++row)
        for (int column = 0; column < w; ++column) {
            const std::size_t from = source.place(x + column, y + row), to = result.place(column, row);
            result.pixels[to] = source.pixels[from];
            if (source.indexed()) result.indices[to] = source.indices[from];
        }
    return result;
}

Picture enlarged(const Picture& source, int times) {
    Picture result(source.width * times, source.height * times);
    result.has_alpha = source.has_alpha;
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x) result.at(x, y) = source.at(x / times, y / times);
    return result;
}

std::vector<std::uint8_t> rgb_bytes(const Picture& picture) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(3 * picture.pixels.size());
    for (const Rgba& p : picture.pixels) bytes.insert(bytes.end(), {p.r, p.g, p.b});
    return bytes;
}

}  // namespace player
