#include <pixman.h>

#include <cstring>
#include <stdexcept>
#include <vector>

#include "bench/peer.h"

namespace bench {
namespace {

struct Unref {
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using Image = std::unique_ptr<pixman_image_t, Unref>;
using Words = std::vector<std::uint32_t>;  // whole rows: pixman wants rows of whole words

Image wrap(pixman_format_code_t format, Size size, std::uint32_t* pixels, std::int32_t pitch) {
    Image image(pixman_image_create_bits_no_clear(format, size.width, size.height, pixels, pitch));
    if (!image) throw std::runtime_error("pixman: no image of " + text(size));
    return image;
}

pixman_format_code_t opaque_format(std::int32_t bits) {
    if (bits == 8) return PIXMAN_a8;
    return bits == 16 ? PIXMAN_r5g6b5 : PIXMAN_x8b8g8r8;
}

// A copy of a map in another form: rows of `pitch` bytes, each pixel put through `convert`.
template <class From, class To, class Convert>
Words converted(host::Map& map, std::int32_t pitch, Convert convert) {
    Words words(static_cast<std::size_t>(pitch / 4 * map.height()));
    for (std::int32_t y = 0; y < map.height(); ++y) {
        const auto* from = reinterpret_cast<const From*>(map.row(y).data());
        auto* to = reinterpret_cast<To*>(words.data() + static_cast<std::ptrdiff_t>(y) * (pitch / 4));
        for (std::int32_t x = 0; x < map.width(); ++x) to[x] = convert(from[x]);
    }
    return words;
}

std::uint32_t premultiplied(std::uint32_t pixel) {
    const std::uint32_t a = pixel >> 24;
    std::uint32_t result = a << 24;
    for (int shift = 0; shift < 24; shift += 8) result |= ((pixel >> shift & 255) * a + 127) / 255 << shift;
    return result;
}

std::uint32_t keyed_to_argb(std::uint16_t pixel) {
    if (pixel == 0) return 0;
    const std::uint32_t r = pixel >> 11, g = pixel >> 5 & 63U, b = pixel & 31U;
    return 0xff000000U | (r << 3 | r >> 2) << 16 | (g << 2 | g >> 4) << 8 | (b << 3 | b >> 2);
}

class Plane {
  public:
    Plane(host::Map& map, const Layer& layer) : size_{map.width(), map.height()} {
        const std::int32_t bits = map.bits_per_pixel();
        if (bits == 8) prepare_indices(map, layer);
        if (bits == 16) prepare_565(map, layer);
        if (bits == 32) prepare_words(map, layer);
        operator_ = layer.keyed || layer.alpha != 255 ? PIXMAN_OP_OVER : PIXMAN_OP_SRC;
        if (bits == 8) operator_ = layer.keyed ? PIXMAN_OP_ADD : PIXMAN_OP_SRC;
        if (layer.alpha == 255) return;
        const pixman_color_t colour{0, 0, 0, static_cast<std::uint16_t>(layer.alpha * 257)};
        fade_.reset(pixman_image_create_solid_fill(&colour));
    }

    void draw(pixman_image_t* destination, Size view, Position at) {
        if (clearing_) composite(PIXMAN_OP_OUT_REVERSE, clearing_.get(), nullptr, destination, view, at);
        composite(operator_, image_.get(), fade_.get(), destination, view, at);
    }

  private:
    void composite(pixman_op_t op, pixman_image_t* source, pixman_image_t* mask, pixman_image_t* destination,
                   Size view, Position at) {
        cover(view, size_, at, [&](int map_x, int map_y, int width, int height, int x, int y) {
            pixman_image_composite32(op, source, mask, destination, map_x, map_y, 0, 0, x, y, width, height);
        });
    }

    // A keyed plane of indices: where it is opaque the destination is cleared by the mask, then both add up.
    void prepare_indices(host::Map& map, const Layer& layer) {
        const std::int32_t pitch = (size_.width + 3) / 4 * 4;
        using Index = std::uint8_t;
        pixels_ = converted<Index, Index>(map, pitch, [](Index i) { return i; });
        image_ = wrap(PIXMAN_a8, size_, pixels_.data(), pitch);
        if (!layer.keyed) return;
        mask_ =
            converted<Index, Index>(map, pitch, [](Index i) { return static_cast<Index>(i == 0 ? 0 : 255); });
        clearing_ = wrap(PIXMAN_a8, size_, mask_.data(), pitch);
    }

    void prepare_565(host::Map& map, const Layer& layer) {
        if (layer.keyed) {
            pixels_ = converted<std::uint16_t, std::uint32_t>(map, size_.width * 4, keyed_to_argb);
            image_ = wrap(PIXMAN_a8r8g8b8, size_, pixels_.data(), size_.width * 4);
        } else {
            const std::int32_t pitch = (size_.width + 1) / 2 * 4;
            pixels_ = converted<std::uint16_t, std::uint16_t>(map, pitch, [](std::uint16_t p) { return p; });
            image_ = wrap(PIXMAN_r5g6b5, size_, pixels_.data(), pitch);
        }
    }

    // Keyed maps without per-pixel alpha hold alpha 0 and 255 as they are.
    void prepare_words(host::Map& map, const Layer& layer) {
        const bool blended = layer.pixel_alpha && !over_black(layer);
        pixels_ = converted<std::uint32_t, std::uint32_t>(map, size_.width * 4, [&](std::uint32_t p) {
            if (over_black(layer)) return over_black_pixel(p);
            return blended ? premultiplied(p) : p;
        });
        const bool has_alpha = layer.keyed || blended;
        image_ = wrap(has_alpha ? PIXMAN_a8b8g8r8 : PIXMAN_x8b8g8r8, size_, pixels_.data(), size_.width * 4);
    }

    Size size_;
    Words pixels_;
    Words mask_;
    Image image_;
    Image clearing_;
    Image fade_;
    pixman_op_t operator_ = PIXMAN_OP_SRC;
};

class PixmanPeer : public Peer {
  public:
    PixmanPeer(Stage& stage, const Variant& variant)
        : view_(stage.view()),
          destination_(wrap(opaque_format(stage.bits_per_pixel()), view_,
                            reinterpret_cast<std::uint32_t*>(stage.screen().data()), stage.pitch())) {
        if (variant.planes == 2)
            back_ = std::make_unique<Plane>(stage.back_map(variant), back_layer(variant));
        front_ =
            std::make_unique<Plane>(stage.front_map(variant), front_layer(variant, stage.bits_per_pixel()));
    }

    void draw(Position front, Position back) override {
        if (back_) back_->draw(destination_.get(), view_, back);
        front_->draw(destination_.get(), view_, front);
    }

  private:
    Size view_;
    Image destination_;
    std::unique_ptr<Plane> back_;
    std::unique_ptr<Plane> front_;
};

}  // namespace

std::unique_ptr<Peer> make_pixman_peer(Stage& stage, const Variant& variant) {
    return std::make_unique<PixmanPeer>(stage, variant);
}

}  // namespace bench
