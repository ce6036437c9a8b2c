#include "tests/model/routines.h"

#include <algorithm>
#include <cstring>

namespace model {

std::vector<std::vector<Entry>> passes;

Entry words_of(const __RVKBlit2D__& entry) {
    Entry words;
    std::memcpy(words.data(), &entry, sizeof words);
    return words;
}

void stamp(const Entry& e, Surface graphic, Surface target) {
    if (graphic.pixels == nullptr) return;
    const auto bytes =
        static_cast<std::size_t>(host::bytes_per_pixel(host::Engine::live()->video().bits_per_pixel));
    const Int left = std::max<Int>({0, e[12], e[37]});
    const Int right = std::min<Int>({target.width - 1, e[12] + graphic.width - 1, e[38]});
    const Int top = std::max<Int>({0, e[13], e[39]});
    const Int bottom = std::min<Int>({target.height - 1, e[13] + graphic.height - 1, e[40]});
    for (Int y = top; y <= bottom; ++y)
        for (Int x = left; x <= right; ++x) {
            Pixel pixel = 0;
            const auto from = static_cast<std::size_t>((y - e[13]) * graphic.width + x - e[12]);
            const auto to = static_cast<std::size_t>(y * target.width + x);
            std::memcpy(&pixel, graphic.pixels + from * bytes, bytes);
            if (pixel != 0) std::memcpy(target.pixels + to * bytes, &pixel, bytes);
        }
}

namespace {

std::int32_t (*host_sort)() = nullptr;

std::int32_t sort_and_keep() {
    const std::int32_t result = host_sort();
    std::vector<Entry>& pass = passes.emplace_back();
    for (const __RVKBlit2D__* entry : host::Engine::live()->blit_lists().current().entries())
        pass.push_back(words_of(*entry));
    return result;
}

Surface surface_of(const MapRecord& bitmap) {
    return {bitmap.width, bitmap.height, static_cast<std::byte*>(bitmap.pixels)};
}

template <int routine>
std::int32_t stamp_entry(__RVKBlit2D__* blit) {
    static int calls = 0;  // six routines at six addresses
    stamp(words_of(*blit), surface_of(*blit->bitmap), surface_of(*blit->target));
    if (blit->word31 == kStopsScroll) host::Engine::live()->services()->StopScroll(blit->word30);
    return ++calls;
}

}  // namespace

void replace_routines(Graphics2DInterface& g) {
    g.BlitSprite = stamp_entry<0>;
    g.BlitSpriteScaled = stamp_entry<1>;
    g.BlitSpriteRotated = stamp_entry<2>;
    g.BlitSpriteRotatedScaled = stamp_entry<3>;
    g.BlitSpriteGeneral = stamp_entry<4>;
    g.BlitSpriteRotatedGeneral = stamp_entry<5>;
    host_sort = g.SortBlitList;
    g.SortBlitList = sort_and_keep;
}

}  // namespace model
