#include <SDL.h>

#include <cstring>
#include <stdexcept>
#include <vector>

#include "bench/peer.h"

namespace bench {
namespace {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, FreeSurface>;

void check(bool done) {
    if (!done) throw std::runtime_error(std::string("SDL: ") + SDL_GetError());
}

Uint32 format_of(std::int32_t bits, bool alpha) {
    if (bits == 8) return SDL_PIXELFORMAT_INDEX8;
    if (bits == 16) return SDL_PIXELFORMAT_RGB565;
    return alpha ? SDL_PIXELFORMAT_ABGR8888 : SDL_PIXELFORMAT_XBGR8888;
}

// A surface over pixels that live elsewhere.
Surface wrap(void* pixels, std::int32_t width, std::int32_t height, std::int32_t bits, bool alpha) {
    Surface surface(SDL_CreateRGBSurfaceWithFormatFrom(pixels, width, height, bits, width * bits / 8,
                                                       format_of(bits, alpha)));
    check(surface != nullptr);
    return surface;
}

class Plane {
  public:
    Plane(host::Map& map, const Layer& layer, SDL_Palette* palette, bool run_length)
        : size_{map.width(), map.height()} {
        const bool blend = layer.alpha != 255 || (layer.pixel_alpha && layer.keyed);
        void* pixels = map.bytes().data();
        if (over_black(layer)) pixels = prepare(map);
        surface_ = wrap(pixels, size_.width, size_.height, map.bits_per_pixel(), layer.pixel_alpha && blend);
        if (palette != nullptr) check(SDL_SetSurfacePalette(surface_.get(), palette) == 0);
        check(SDL_SetSurfaceBlendMode(surface_.get(), blend ? SDL_BLENDMODE_BLEND : SDL_BLENDMODE_NONE) == 0);
        check(SDL_SetSurfaceAlphaMod(surface_.get(), static_cast<Uint8>(layer.alpha)) == 0);
        if (layer.keyed && !layer.pixel_alpha) check(SDL_SetColorKey(surface_.get(), SDL_TRUE, 0) == 0);
        if (run_length) check(SDL_SetSurfaceRLE(surface_.get(), 1) == 0);
    }

    void draw(SDL_Surface* destination, Size view, Position at) {
        cover(view, size_, at, [&](int map_x, int map_y, int width, int height, int x, int y) {
            SDL_Rect from{map_x, map_y, width, height};
            SDL_Rect to{x, y, width, height};
            check(SDL_BlitSurface(surface_.get(), &from, destination, &to) == 0);
        });
    }

  private:
    void* prepare(const host::Map& map) {
        prepared_.resize(map.bytes().size() / sizeof(std::uint32_t));
        std::memcpy(prepared_.data(), map.bytes().data(), map.bytes().size());
        for (std::uint32_t& pixel : prepared_) pixel = over_black_pixel(pixel);
        return prepared_.data();
    }

    Size size_;
    std::vector<std::uint32_t> prepared_;
    Surface surface_;
};

class SdlPeer : public Peer {
  public:
    SdlPeer(Stage& stage, const Variant& variant, bool run_length)
        : view_(stage.view()),
          destination_(
              wrap(stage.screen().data(), view_.width, view_.height, stage.bits_per_pixel(), false)) {
        SDL_Palette* palette = destination_->format->palette;
        if (variant.planes == 2)
            back_ =
                std::make_unique<Plane>(stage.back_map(variant), back_layer(variant), palette, run_length);
        front_ = std::make_unique<Plane>(stage.front_map(variant),
                                         front_layer(variant, stage.bits_per_pixel()), palette, run_length);
    }

    void draw(Position front, Position back) override {
        if (back_) back_->draw(destination_.get(), view_, back);
        front_->draw(destination_.get(), view_, front);
    }

  private:
    Size view_;
    Surface destination_;
    std::unique_ptr<Plane> back_;
    std::unique_ptr<Plane> front_;
};

}  // namespace

std::unique_ptr<Peer> make_sdl_peer(Stage& stage, const Variant& variant, bool run_length) {
    return std::make_unique<SdlPeer>(stage, variant, run_length);
}

}  // namespace bench
