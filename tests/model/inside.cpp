#include "tests/model/inside.h"

extern "C" [[gnu::visibility("default")]] const model::Inside scroll2d_inside = {
    scroll2d::scroll_sys, &scroll2d::widest_unit, scroll2d::vector_unit, &scroll2d::asking};
