// The pictures that the planes show. What a rule costs depends on them: on calm ones a processor guesses
// right, and whole groups of pixels are transparent or opaque; on broken-up ones neither holds.
#pragma once

#include <string>
#include <vector>

#include "bench/scene.h"
#include "host/depth.h"

namespace bench {

struct Pictures {
    host::Image cover;  // opaque everywhere
    host::Image back;   // with transparent parts, behind
    host::Image front;  // with transparent parts, in front
};

// A kind of pictures. The same at every run.
struct Kind {
    const char* name;
    const char* what;  // in words
    Pictures (*paint)(Size size);
};

// landscape.cpp: a landscape by formula. Long opaque runs, long transparent runs, soft edges and mist, fine
// texture everywhere.
[[nodiscard]] host::Image paint_sky(Size size);    // opaque everywhere
[[nodiscard]] host::Image paint_hills(Size size);  // clouds and hills, clear air between
[[nodiscard]] host::Image paint_woods(Size size);  // trees, ground and mist, the rest clear
[[nodiscard]] Pictures paint_landscape(Size size);

// art.cpp: the pictures of the demos. Errors: std::runtime_error for a file that cannot be read.
[[nodiscard]] Pictures paint_art(Size size);

// runs.cpp: every row changes between transparent, opaque and partly transparent in runs of random length, 1
// to `longest` pixels, neighbours never alike. A run has one colour and one alpha.
[[nodiscard]] Pictures paint_runs(Size size, std::int32_t longest);

// In the order of the tables, the calmest first.
const std::vector<Kind>& kinds();

}  // namespace bench
