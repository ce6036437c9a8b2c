// What a module that was linked for tests shows of itself under the name scroll2d_inside.
#pragma once

#include "module/render/calm.h"
#include "module/render/vector_unit.h"
#include "module/state/scroll_table.h"

namespace model {

struct Inside {
    const scroll2d::ScrollRecord* records;  // of the ten scrolls
    scroll2d::VectorUnit* widest_unit;
    scroll2d::VectorUnit (*vector_unit)();
    scroll2d::Asking* asking;
};

}  // namespace model
