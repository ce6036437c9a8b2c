#include "bench/pictures.h"

namespace bench {

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> list{
        {"art", "the demos' art", paint_art},
        {"landscape", "a landscape by formula", paint_landscape},
        {"runs400", "runs of 1 to 400 pixels", [](Size size) { return paint_runs(size, 400); }},
        {"runs100", "runs of 1 to 100 pixels", [](Size size) { return paint_runs(size, 100); }},
        {"runs24", "runs of 1 to 24 pixels", [](Size size) { return paint_runs(size, 24); }},
        {"noise", "runs of 1 pixel", [](Size size) { return paint_runs(size, 1); }},
    };
    return list;
}

}  // namespace bench
