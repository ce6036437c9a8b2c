#include <cstdint>

#include "module/state/host_lookups.h"
#include "module/state/routine_pointers.h"

namespace scroll2d {

#define SCROLL2D_DEFINE(Type, name) Type* name;
SCROLL2D_ROUTINES(SCROLL2D_DEFINE)
#undef SCROLL2D_DEFINE

std::int32_t routine_pixel_bytes;

namespace {

template <class Routine>
Routine* of_this_depth(Routine* bits8, Routine* bits16, Routine* bits32) {
    switch (routine_pixel_bytes) {
        case 2:
            return bits16;
        case 4:
            return bits32;
        default:
            return bits8;
    }
}

}  // namespace

void set_scroll2D_drawing_routines() {
    routine_pixel_bytes = screen_pixel_bytes();
#define SCROLL2D_CHOOSE(Type, name) name = of_this_depth(name##_8bits, name##_16bits, name##_32bits);
    SCROLL2D_ROUTINES(SCROLL2D_CHOOSE)
#undef SCROLL2D_CHOOSE
}

}  // namespace scroll2d
