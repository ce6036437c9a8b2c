#include <random>

#include "bench/pictures.h"

namespace bench {
namespace {

enum class Run { transparent, opaque, partly };

// A small generator whose numbers are the same with every standard library, which those of <random>'s
// distributions are not.
class Random {
  public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    std::int32_t below(std::int32_t end) {
        return static_cast<std::int32_t>(engine_() % static_cast<std::uint32_t>(end));
    }

  private:
    std::mt19937 engine_;
};

std::uint8_t alpha_of(Run run, Random& random) {
    if (run == Run::transparent) return 0;
    return static_cast<std::uint8_t>(run == Run::opaque ? 255 : 1 + random.below(254));
}

// One of 512 colours, none of them black.
host::Rgba colour(std::uint8_t alpha, Random& random) {
    if (alpha == 0) return {0, 0, 0, 0};
    const std::int32_t number = random.below(512);
    const auto channel = [number](int shift) {
        return static_cast<std::uint8_t>(16 + 32 * (number >> shift & 7));
    };
    return {channel(0), channel(3), channel(6), alpha};
}

void append_row(host::Image& image, std::int32_t longest, Random& random) {
    std::int32_t left = image.width;
    std::int32_t number = random.below(3);
    while (left > 0) {
        number = (number + 1 + random.below(2)) % 3;
        const host::Rgba run = colour(alpha_of(static_cast<Run>(number), random), random);
        const std::int32_t length = std::min(left, 1 + random.below(longest));
        image.pixels.insert(image.pixels.end(), static_cast<std::size_t>(length), run);
        left -= length;
    }
}

host::Image paint(Size size, std::int32_t longest, std::uint32_t seed) {
    Random random(seed);
    host::Image image{size.width, size.height, {}};
    image.pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (std::int32_t y = 0; y < size.height; ++y) append_row(image, longest, random);
    return image;
}

}  // namespace

Pictures paint_runs(Size size, std::int32_t longest) {
    return {paint_sky(size), paint(size, longest, 1), paint(size, longest, 2)};
}

}  // namespace bench
