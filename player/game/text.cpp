#include "player/game/text.h"

#include <stb/stb_easy_font.h>

#include <algorithm>
#include <memory>

namespace player {
namespace {

struct Vertex {
    float x, y, z;
    std::uint8_t colour[4];
};
static_assert(sizeof(Vertex) == 16);

// The font takes writable text and knows printable ASCII only.
std::string printable(const std::string& text) {
    std::string result = text;
    for (char& c : result)
        if (c != '\n' && (c < ' ' || c > '~')) c = '?';
    return result;
}

}  // namespace

TextSize text_size(const std::string& text, int scale) {
    std::string copy = printable(text);
    return {stb_easy_font_width(copy.data()) * scale, stb_easy_font_height(copy.data()) * scale};
}

void draw_box(host::Bitmap& bitmap, std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h,
              std::uint32_t pixel) {
    const auto left = static_cast<std::int32_t>(std::max<std::int64_t>(x, 0));
    const auto top = static_cast<std::int32_t>(std::max<std::int64_t>(y, 0));
    const auto right = static_cast<std::int32_t>(std::min<std::int64_t>(x + w, bitmap.width()));
    const auto bottom = static_cast<std::int32_t>(std::min<std::int64_t>(y + h, bitmap.height()));
    for (std::int32_t row = top; row < bottom; ++row) bitmap.fill_row(left, row, right - left, pixel);
}

void draw_text(host::Bitmap& bitmap, int x, int y, const std::string& text, std::uint32_t pixel, int scale) {
    std::string copy = printable(text);
    // A glyph is a dozen strokes at most, each a quad of four vertices.
    const std::size_t room = 4 * 16 * (copy.size() + 1);
    const auto vertices = std::make_unique_for_overwrite<Vertex[]>(room);
    const int quads = stb_easy_font_print(0, 0, copy.data(), nullptr, vertices.get(),
                                          static_cast<int>(room * sizeof(Vertex)));
    for (int i = 0; i < quads; ++i) {
        const Vertex& near = vertices[static_cast<std::size_t>(4 * i)];
        const Vertex& far = vertices[static_cast<std::size_t>(4 * i + 2)];
        const auto whole = [](float value) {
            return static_cast<std::int64_t>(value);
        };  // it has no fraction
        draw_box(bitmap, x + whole(near.x) * scale, y + whole(near.y) * scale,
                 (whole(far.x) - whole(near.x)) * scale, (whole(far.y) - whole(near.y)) * scale, pixel);
    }
}

}  // namespace player
