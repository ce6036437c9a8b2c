#include "module/render/vector_unit.h"

namespace scroll2d {

VectorUnit widest_unit = VectorUnit::avx2;

VectorUnit vector_unit() {
    if (widest_unit >= VectorUnit::avx2 && __builtin_cpu_supports("avx2")) return VectorUnit::avx2;
    if (widest_unit >= VectorUnit::sse4 && __builtin_cpu_supports("sse4.1")) return VectorUnit::sse4;
    return VectorUnit::sse2;
}

}  // namespace scroll2d
