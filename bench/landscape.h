// Pictures like those of a game, made by formula: long opaque runs, long transparent runs, soft edges and
// mist, fine texture everywhere. The same at every run.
#pragma once

#include "bench/scene.h"
#include "host/depth.h"

namespace bench {

[[nodiscard]] host::Image paint_sky(Size size);    // opaque everywhere
[[nodiscard]] host::Image paint_hills(Size size);  // clouds and hills, clear air between
[[nodiscard]] host::Image paint_woods(Size size);  // trees, ground and mist, the rest clear

struct Pictures {
    explicit Pictures(Size size) : sky(paint_sky(size)), hills(paint_hills(size)), woods(paint_woods(size)) {}
    host::Image sky;
    host::Image hills;
    host::Image woods;
};

}  // namespace bench
